// How fast lists are: days and months of an unchanged file beside SQLite with the same records, and what
// they, Find and the alarm check cost after another copy has changed the file, beside the reading that they
// cannot do without. Exits with 1 when a limit is exceeded.
#include <fcntl.h>
#ifdef HAS_SQLITE
#include <sqlite3.h>
#endif

#include <bit>
#include <chrono>
#include <cstring>
#include <thread>
#include <tuple>

#include "core/calendar/alarm_schedule.h"
#include "core/calendar/day_lists.h"
#include "core/calendar/day_table.h"
#include "core/calendar/repeat_rule.h"
#include "core/calendar/text_search.h"
#include "core/store/record_scan.h"
#include "measuring.h"

namespace {

using namespace measuring;

constexpr core::Date kDay{14, 3, 2004};
constexpr core::Date kMonth{1, 3, 2004};

#ifdef HAS_SQLITE

// The records as rows, with an index on their dates and one over those that repeat. Statements are prepared
// once, the database stays open, and its cache holds all of it.
class Database {
 public:
  explicit Database(const RecordFile& file) {
    const std::string path = file.Path() + ".sqlite";
    if (sqlite3_open(path.c_str(), &database) != SQLITE_OK) Fail("sqlite");
    Execute(
        "PRAGMA journal_mode = WAL; PRAGMA cache_size = -400000;"
        "CREATE TABLE appointment (slot INTEGER PRIMARY KEY, id INTEGER, day INTEGER, start INTEGER,"
        " allDay INTEGER, category TEXT, repeatType INTEGER, rule BLOB, subject TEXT, notes TEXT); BEGIN");
    sqlite3_stmt* insert = Prepare("INSERT INTO appointment VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    if (core::ScanRecords(file, [&](const char* slot, std::int32_t offset) {
          Insert(insert, slot, offset);
        }) != core::ScanResult::kAll) {
      Fail("scan");
    }
    sqlite3_finalize(insert);
    Execute(
        "COMMIT; CREATE INDEX byDay ON appointment (day);"
        "CREATE INDEX repeating ON appointment (repeatType) WHERE repeatType <> 0; ANALYZE");
    single = Prepare(
        "SELECT slot, id, day, start, allDay FROM appointment"
        " WHERE day BETWEEN ? AND ? AND repeatType = 0");
    repeating = Prepare("SELECT slot, id, rule, start, allDay FROM appointment WHERE repeatType <> 0");
  }
  ~Database() {
    sqlite3_finalize(single);
    sqlite3_finalize(repeating);
    sqlite3_close(database);
  }
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  // What DayLists answers.
  std::vector<std::vector<core::RecordKey>> Days(const core::Date& first, int count) {
    std::vector<std::vector<Row>> rows(static_cast<std::size_t>(count));
    const int from = core::DayIndex(first);
    sqlite3_bind_int(single, 1, from);
    sqlite3_bind_int(single, 2, from + count - 1);
    while (sqlite3_step(single) == SQLITE_ROW) {
      rows[static_cast<std::size_t>(sqlite3_column_int(single, 2) - from)].push_back(RowOf(single));
    }
    sqlite3_reset(single);
    while (sqlite3_step(repeating) == SQLITE_ROW) {
      Rule rule;
      std::memcpy(&rule, sqlite3_column_blob(repeating, 2), sizeof rule);
      std::uint64_t on = core::OccurrenceDays(rule.date, rule.repeat, first, count);
      for (; on != 0; on &= on - 1) {
        rows[static_cast<std::size_t>(std::countr_zero(on))].push_back(RowOf(repeating));
      }
    }
    sqlite3_reset(repeating);
    std::vector<std::vector<core::RecordKey>> days(rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
      std::sort(rows[i].begin(), rows[i].end(), [](const Row& a, const Row& b) {
        return a.order != b.order ? a.order < b.order : a.record.offset < b.record.offset;
      });
      for (const Row& row : rows[i]) days[i].push_back(row.record);
    }
    return days;
  }

 private:
  struct Row {
    int order;
    core::RecordKey record;
  };
  struct Rule {
    core::Date date;
    core::RepeatRule repeat;
  };

  static Row RowOf(sqlite3_stmt* statement) {
    const int start = sqlite3_column_int(statement, 3);
    return {
        sqlite3_column_int(statement, 4) != 0 ? start : start + core::kDaySlots * 2,
        {sqlite3_column_int(statement, 0), static_cast<std::uint64_t>(sqlite3_column_int64(statement, 1))}};
  }

  void Execute(const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) Fail(sqlite3_errmsg(database));
  }
  sqlite3_stmt* Prepare(const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) != SQLITE_OK)
      Fail(sqlite3_errmsg(database));
    return statement;
  }
  static void Insert(sqlite3_stmt* insert, const char* slot, std::int32_t offset) {
    const auto& record = *reinterpret_cast<const Appointment*>(slot);
    const Rule rule{record.date, record.repeat};
    const auto text = [insert](int column, std::string_view value) {
      sqlite3_bind_text(insert, column, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
    };
    sqlite3_bind_int(insert, 1, offset);
    sqlite3_bind_int64(insert, 2, static_cast<sqlite3_int64>(record.header.recordId));
    sqlite3_bind_int(insert, 3, core::DayIndex(record.date));
    sqlite3_bind_int(insert, 4, core::TimeSlot(record.startTime));
    sqlite3_bind_int(insert, 5, static_cast<int>(record.allDay));
    text(6, core::ReadText(record.header.category));
    sqlite3_bind_int(insert, 7, record.repeat.repeatType);
    sqlite3_bind_blob(insert, 8, &rule, sizeof rule, SQLITE_TRANSIENT);
    text(9, core::ReadText(record.subject));
    text(10, core::ReadText(record.notes));
    if (sqlite3_step(insert) != SQLITE_DONE || sqlite3_reset(insert) != SQLITE_OK) Fail("insert");
  }

  sqlite3* database = nullptr;
  sqlite3_stmt* single = nullptr;
  sqlite3_stmt* repeating = nullptr;
};

void BesideSqlite(const RecordFile& file, int records) {
  Database database(file);
  core::DayLists lists;
  const auto list = [&](const core::Date& first, int count) {
    if (!lists.Run(file, first, count)) Fail("list");
  };
  for (const auto& [name, first, count] :
       {std::tuple("list of a day", kDay, 1), std::tuple("lists of a month", kMonth, 31)}) {
    list(first, count);
    std::this_thread::sleep_for(std::chrono::milliseconds(200));  // the file is unchanged for a while
    const auto rows = database.Days(first, count);
    for (int i = 0; i < count; ++i) {
      if (rows[static_cast<std::size_t>(i)] != lists.Day(i)) Fail("the same lists");
    }
    Compare(
        std::string(name) + " / SQLite, " + std::to_string(records) + " records", Rounds(records), 1.0,
        [&, start = first, days = count] { list(start, days); },
        [&, start = first, days = count] { benchmark::DoNotOptimize(database.Days(start, days)); });
  }
}

#else

void BesideSqlite(const RecordFile& /*file*/, int /*records*/) {
  std::puts("Built without SQLite, so nothing is compared with it.");
}

#endif

// What one look at an unchanged file costs: it proves the table.
void Proving(const RecordFile& file) {
  constexpr int kLooks = 1000;
  const core::DayTable* table = core::DayTable::Of(file);
  const double each = Microseconds([&] {
                        for (int i = 0; i < kLooks; ++i)
                          benchmark::DoNotOptimize(table = core::DayTable::Of(file));
                      }) /
                      kLooks;
  if (table == nullptr) Fail("table");
  Print("proving the day table", each, 5, 1);
}

// Lists and alarms when another copy has changed a record, and texts, which are always read from the file.
void Reading(const RecordFile& file, int records) {
  RecordFile other(file.Path(), "");
  Appointment record;
  if (!other.ReadRecord(&record, other.FirstSlotOffset())) Fail("read");
  const auto change = [&] {
    if (other.WriteRecord(&record, other.FirstSlotOffset()) != core::Result::kDone) Fail("write");
  };
  const int descriptor = open(file.Path().c_str(), O_RDONLY | O_CLOEXEC);
  std::vector<char> buffer(kRun);
  const auto bare = [&] { ReadBare(descriptor, buffer); };
  const std::string size = ", " + std::to_string(records) + " records";
  core::DayLists lists;
  Compare(
      "lists of a month after a change / bare read" + size, Rounds(records), 1.5, change,
      [&] {
        if (!lists.Run(file, kMonth, 31)) Fail("month");
      },
      bare);
  core::TextSearch search;
  Compare(
      "find a text / bare read" + size, Rounds(records), 2.5,
      [&] {
        if (!search.Run(file, "nothing like it")) Fail("find");
      },
      bare);
  core::AlarmList alarms;
  std::int64_t sum = 0;
  Compare(
      "alarm check after a change / scan" + size, Rounds(records), 1.3, change,
      [&] {
        if (!core::ListAlarms(file, {kDay, {9, 0, 0, core::kBeforeNoon}}, alarms)) Fail("alarms");
      },
      [&] {
        const auto visit = [&sum](const char* /*slot*/, std::int32_t offset) { sum += offset; };
        if (core::ScanRecords(file, visit) != core::ScanResult::kAll) Fail("scan");
      });
  benchmark::DoNotOptimize(sum);
  close(descriptor);
}

}  // namespace

int main() {
  PrintHead();
  for (const int records : {1000, 10000, 100000}) {
    const std::unique_ptr<RecordFile> file = Calendar(records);
    BesideSqlite(*file, records);
    if (records == 1000) Proving(*file);
    Reading(*file, records);
  }
  std::filesystem::remove_all(Folder());
  return exceeded ? 1 : 0;
}
