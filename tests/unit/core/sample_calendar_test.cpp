// Lists of a calendar of 1,200 slots that another program made, against what that program says they must
// hold.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

#include "core/repeat_rule.h"
#include "gtest/gtest.h"
#include "platform/system/code_page.h"
#include "support/json.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Json;

const std::string kData = DAYBRIX_SOURCE_FOLDER "/tests/data/";

std::string Id(const Appointment& appointment) {
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(appointment.header.recordId));
  return text;
}

class SampleCalendar : public testing::Test {
 protected:
  static std::vector<Appointment> Records(const RecordFile& file, const RecordQuery& query) {
    std::vector<Appointment> records(query.OffsetCount());
    for (std::size_t i = 0; i < records.size(); ++i)
      EXPECT_TRUE(file.ReadRecord(&records[i], query.OffsetAt(i)));
    return records;
  }

  static std::set<std::string> Ids(const RecordFile& file, const RecordQuery& query) {
    std::set<std::string> ids;
    for (const Appointment& record : Records(file, query)) ids.insert(Id(record));
    return ids;
  }

  static std::set<std::string> Texts(const Json& list) {
    std::set<std::string> texts;
    for (const Json& item : list.items) texts.insert(item.text);
    return texts;
  }

  static RecordQuery OneDay(const std::string& isoDate) {
    const Date day{std::stoi(isoDate.substr(8)), std::stoi(isoDate.substr(5, 2)),
                   std::stoi(isoDate.substr(0, 4))};
    RecordQuery query;
    query.AddCallbackCondition(0, &day, sizeof day, OccursOnDate, Connector::kAnd);
    return query;
  }

  std::string Copy() const {
    std::string path = folder.Join("office.cld");
    std::filesystem::copy_file(kData + "office.cld", path);
    return path;
  }

  static Json ReadExpected() {
    std::ifstream stream(kData + "office.expected.json");
    return Json::Parse({std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
  }

  tests::TemporaryFolder folder;
  RecordFile file{Copy(), ""};
  const Json expected = ReadExpected();
};

// Rows in order; those with equal keys may stand in any order and are compared as a set.
TEST_F(SampleCalendar, DaysOfTheOwner) {
  ASSERT_EQ(expected["days"].fields.size(), 44U);
  for (const auto& [date, lists] : expected["days"].fields) {
    RecordQuery query = OneDay(date);
    ASSERT_TRUE(query.Run(file) && query.Sort(file, kDayOrder));
    std::vector<std::string> rows;
    for (const Appointment& record : Records(file, query)) {
      const int slot = TimeSlot(record.startTime);
      rows.push_back((record.allDay != 0 ? "0 " : "1 ") + std::to_string(1000 + slot) + ' ' + Id(record) +
                     ' ' + platform::Utf8FromCodePage(ReadText(record.header.category)) + '|' +
                     platform::Utf8FromCodePage(ReadText(record.subject)));
    }
    std::vector<std::string> wanted;
    for (const Json& row : lists["owner"].items) {
      wanted.push_back((row["allDay"].number != 0 ? "0 " : "1 ") +
                       std::to_string(1000 + static_cast<int>(row["slot"].number)) + ' ' + row["id"].text +
                       ' ' + row["category"].text + '|' + row["subject"].text);
    }
    EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end(), [](const std::string& a, const std::string& b) {
      return a.substr(0, 6) < b.substr(0, 6);
    })) << date;
    std::sort(rows.begin(), rows.end());
    std::sort(wanted.begin(), wanted.end());
    EXPECT_EQ(rows, wanted) << date;
  }
}

TEST_F(SampleCalendar, DaysOfAReaderAndOfACategory) {
  ASSERT_TRUE(file.UpdateHeaderBlock([](HeaderBlock& header) {
    WriteText(header.ownerPassword, "own");
    WriteText(header.assistantPassword, "assist");
    WriteText(header.readerPassword, "read");
  }));
  const RecordFile reader(file.Path(), "read");
  file.SetPassword("own");
  std::size_t found = 0;
  for (const auto& [date, lists] : expected["days"].fields) {
    RecordQuery query = OneDay(date);
    ASSERT_TRUE(query.Run(reader));
    EXPECT_EQ(Ids(reader, query), Texts(lists["reader_ids"])) << date;
    query.AddTextCondition(offsetof(RecordHeader, category), 30, ConditionOp::kEqual, "Calls",
                           Connector::kAnd);
    ASSERT_TRUE(query.Run(file));
    EXPECT_EQ(Ids(file, query), Texts(lists["calls_ids"])) << date;
    found += query.OffsetCount();
  }
  EXPECT_GT(found, 0U);
}

TEST_F(SampleCalendar, FindAndRange) {
  for (const auto& [utf8, ids] : expected["find"].fields) {
    std::string text;
    ASSERT_TRUE(platform::CodePageFromUtf8(utf8, text));
    RecordQuery query;
    query.AddTextCondition(offsetof(Appointment, subject), 150, ConditionOp::kContains, text, Connector::kOr);
    query.AddTextCondition(offsetof(Appointment, notes), 1024, ConditionOp::kContains, text, Connector::kOr);
    ASSERT_TRUE(query.Run(file) && query.Sort(file, kDateTimeOrder));
    EXPECT_EQ(Ids(file, query), Texts(ids)) << utf8;
  }
  const DateRange range{{1, 3, 2004}, {31, 3, 2004}};
  RecordQuery query;
  query.AddCallbackCondition(0, &range, sizeof range, OccursInRange, Connector::kAnd);
  ASSERT_TRUE(query.Run(file) && query.Sort(file, kListOrder));
  EXPECT_EQ(Ids(file, query), Texts(expected["range_2004_03"]));
}

TEST_F(SampleCalendar, SlotsAndLocks) {
  int live = 0;
  int free = 0;
  int confidential = 0;
  int locked = 0;
  Appointment slot;
  for (std::int32_t offset = file.FirstSlotOffset(); file.ReadSlot(&slot, offset); offset += sizeof slot) {
    const RecordHeader& record = slot.header;
    ++(record.inUse == 1 ? live : free);
    confidential += record.inUse == 1 ? record.confidential : 0;
    locked += record.editLock;
  }
  EXPECT_EQ(live, expected["live"].number);
  EXPECT_EQ(free, expected["free"].number);
  EXPECT_EQ(confidential, expected["confidential_live"].number);
  EXPECT_EQ(locked, expected["locked"].number);
}

}  // namespace
}  // namespace core
