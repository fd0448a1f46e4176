// How fast the data store is, each operation beside the bare system calls that it cannot do without. The two
// are run in turn, so that a busy machine slows both, and compared by their medians. Exits with 1 when a
// limit is exceeded.
//
// Files lie beside the program, on the disk that is built on: a memory file system would make flushing free.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "core/calendar/appointment.h"
#include "core/calendar/categories.h"
#include "core/calendar/day_lists.h"
#include "core/calendar/repeat_rule.h"
#include "core/store/compaction.h"
#include "core/store/record_query.h"

namespace {

using core::Appointment;
using core::RecordFile;
using core::RecordQuery;

constexpr std::size_t kSlot = sizeof(Appointment);
constexpr std::size_t kRun = core::kSlotsPerRead * kSlot;
constexpr core::Date kDay{14, 3, 2004};

bool exceeded = false;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(2);
}

// ---- Measuring ----

template <typename Run>
double Microseconds(const Run& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double>& times) {
  std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2), times.end());
  return times[times.size() / 2];
}

void Print(const std::string& name, double measured, double reference, double limit) {
  const double ratio = measured / reference;
  exceeded = exceeded || ratio > limit;
  std::printf("%-44s %12.2f us %12.2f us %8.2f %8.2f%s\n", name.c_str(), measured, reference, ratio, limit,
              ratio > limit ? "  exceeded" : "");
}

// Runs both in turn and prints their medians. Which one comes first alternates.
template <typename Measured, typename Reference>
void Compare(const std::string& name, int rounds, double limit, const Measured& measured,
             const Reference& reference) {
  std::vector<double> ours;
  std::vector<double> theirs;
  measured();
  reference();
  for (int i = 0; i < rounds; ++i) {
    if (i % 2 == 0) ours.push_back(Microseconds(measured));
    theirs.push_back(Microseconds(reference));
    if (i % 2 != 0) ours.push_back(Microseconds(measured));
  }
  Print(name, Median(ours), Median(theirs), limit);
}

// ---- Files ----

std::string Folder() {
  static const std::string folder = [] {
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    std::string made = (program.parent_path() / "benchmark-files").string();
    std::filesystem::remove_all(made);
    std::filesystem::create_directories(made);
    return made;
  }();
  return folder;
}

// A record of some day; every fifth repeats, by each kind of rule in turn.
Appointment SomeRecord(int number, std::minstd_rand& random, const core::HeaderBlock& header) {
  Appointment record{};
  core::InitRecordHeader(record.header, kSlot, header);
  core::Date date{};
  core::DateFromIndex(static_cast<int>(random() % 7300), date);
  record.date = date;
  core::TimeOfDay start{};
  core::TimeFromSlot(static_cast<int>(random() % 288), start);
  record.startTime = start;
  record.allDay = random() % 8 == 0 ? 1 : 0;
  core::WriteText(record.subject, "Appointment " + std::to_string(number));
  core::WriteText(record.notes, std::string(random() % 1000, 'n'));
  if (number % 5 != 0) return record;
  const auto every = static_cast<std::uint32_t>(1 + random() % 5);
  switch (number / 5 % 4) {
    case 0:
      record.repeat = {core::kRepeatDaily, core::kNoEndDate, every, 0};
      break;
    case 1:
      record.repeat = {core::kRepeatWeekly, core::kNoEndDate, every,
                       static_cast<std::uint32_t>(1 + random() % 127)};
      break;
    case 2:
      record.repeat = {core::kRepeatMonthly, core::kNoEndDate, every, static_cast<std::uint32_t>(date.day)};
      break;
    default:
      record.repeat = {core::kRepeatYearly, core::kNoEndDate, every,
                       static_cast<std::uint32_t>(date.month << 16 | date.day)};
  }
  return record;
}

std::unique_ptr<RecordFile> Calendar(int records) {
  core::HeaderBlock header;
  core::InitHeaderBlock(header, "Calendar", "Organizer", 1);
  auto file = std::make_unique<RecordFile>(Folder() + '/' + std::to_string(records) + ".cld", "");
  if (!file->Create(header, core::DefaultCategories(), kSlot)) Fail("create");
  std::minstd_rand random(20040314);
  std::FILE* out = std::fopen(file->Path().c_str(), "ab");
  if (out == nullptr) Fail("open");
  for (int i = 0; i < records; ++i) {
    const Appointment record = SomeRecord(i, random, header);
    if (std::fwrite(&record, kSlot, 1, out) != 1) Fail("write");
  }
  if (std::fclose(out) != 0) Fail("close");
  return file;
}

// Reads every slot in the runs of slots that a scan uses.
void ReadBare(int descriptor, std::vector<char>& buffer) {
  off_t offset = core::kFirstSlotOffset;
  while (pread(descriptor, buffer.data(), kRun, offset) == static_cast<ssize_t>(kRun)) offset += kRun;
  benchmark::DoNotOptimize(buffer.data());
}

// ---- The comparisons ----

void DayLists(RecordFile& file, int descriptor, int records) {
  std::vector<char> buffer(kRun);
  RecordQuery query;
  query.AddCallbackCondition(0, &kDay, sizeof kDay, core::OccursOnDate, core::Connector::kAnd);
  Compare(
      "list of a day, " + std::to_string(records) + " records", records > 50000 ? 21 : 201, 1.5,
      [&] { query.Run(file) ? query.Sort(file, core::kDayOrder) : false; },
      [&] { ReadBare(descriptor, buffer); });
}

// One scan for a whole month, beside one for a day.
void Months(RecordFile& file, int records) {
  core::DayLists month;
  RecordQuery day;
  day.AddCallbackCondition(0, &kDay, sizeof kDay, core::OccursOnDate, core::Connector::kAnd);
  Compare(
      "lists of 31 days / scan, " + std::to_string(records) + " records", records > 50000 ? 21 : 201, 1.3,
      [&] {
        if (!month.Run(file, {1, 3, 2004}, 31)) Fail("month");
      },
      [&] {
        if (!day.Run(file)) Fail("scan");
      });
}

void Finding(RecordFile& file, int descriptor, int records) {
  std::vector<char> buffer(kRun);
  RecordQuery query;
  for (const auto& [offset, size] : {std::pair(offsetof(Appointment, subject), sizeof(Appointment::subject)),
                                     std::pair(offsetof(Appointment, notes), sizeof(Appointment::notes))}) {
    query.AddTextCondition(static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(size),
                           core::ConditionOp::kContains, "nothing like it", core::Connector::kOr);
  }
  Compare(
      "find a text, " + std::to_string(records) + " records", records > 50000 ? 21 : 201, 2.5,
      [&] {
        if (!query.Run(file)) Fail("find");
      },
      [&] { ReadBare(descriptor, buffer); });
}

// Beside a copy of the same bytes that is brought to the disk.
void Compacting(const RecordFile& file, int records) {
  const std::string path = file.Path() + ".compacted";
  const std::string copy = file.Path() + ".copy";
  std::filesystem::copy_file(file.Path(), path);
  std::vector<char> buffer(kRun);
  Compare(
      "compact, " + std::to_string(records) + " records", records > 50000 ? 5 : 21, 1.5,
      [&] {
        if (!core::RepairCheck(path, true).clean) Fail("compact");
      },
      [&] {
        const int from = open(path.c_str(), O_RDONLY | O_CLOEXEC);
        const int to = open(copy.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        ssize_t moved = 0;
        while ((moved = read(from, buffer.data(), kRun)) > 0) {
          if (write(to, buffer.data(), static_cast<std::size_t>(moved)) != moved) Fail("copy");
        }
        if (fsync(to) != 0) Fail("copy");
        close(from);
        close(to);
        std::filesystem::remove(copy);
      });
  std::filesystem::remove(path);
}

void Sorting(RecordFile& file, int descriptor) {
  constexpr std::size_t kCount = 10000;
  std::vector<char> buffer(kRun);
  std::vector<std::uint64_t> keys;
  const auto readAndSort = [&] {
    keys.clear();
    for (off_t offset = core::kFirstSlotOffset; keys.size() < kCount; offset += kRun) {
      if (pread(descriptor, buffer.data(), kRun, offset) < static_cast<ssize_t>(kRun)) Fail("read");
      for (std::size_t at = 0; at < kRun; at += kSlot)
        keys.push_back(core::kListOrder.key(buffer.data() + at));
    }
    std::sort(keys.begin(), keys.end());
    benchmark::DoNotOptimize(keys.data());
  };
  RecordQuery query;
  query.AddMatchAll();
  if (!query.Run(file) || query.Count() != kCount) Fail("run");
  Compare(
      "sort of 10000 by date and day", 101, 1.5, [&] { query.Sort(file, core::kListOrder); }, readAndSort);
}

// Adding a record and changing one, each brought to the disk, beside a bare write of as many bytes. A change
// takes four steps, each under the guard.
void Changing(RecordFile& file, int descriptor, int records) {
  std::minstd_rand random(1);
  core::HeaderBlock header;
  if (!file.ReadHeaderBlock(header)) Fail("read");
  const Appointment record = SomeRecord(1, random, header);
  RecordQuery all;
  all.AddMatchAll();
  if (!all.Run(file)) Fail("run");
  const core::RecordKey first = all.KeyAt(0);
  const std::string beside = file.Path() + ".bare";
  std::filesystem::copy_file(file.Path(), beside);
  const int bare = open(beside.c_str(), O_RDWR | O_CLOEXEC);
  off_t end = lseek(bare, 0, SEEK_END);
  fsync(descriptor);
  fsync(bare);
  const auto writeBare = [&](off_t offset) {
    if (pwrite(bare, &record, kSlot, offset) != static_cast<ssize_t>(kSlot) || fsync(bare) != 0)
      Fail("write");
  };
  Compare(
      "add and flush, " + std::to_string(records) + " records", 201, 1.5,
      [&] {
        if (file.AddRecord(&record) != core::Result::kDone || !file.Flush()) Fail("add");
      },
      [&] {
        writeBare(end);
        end += kSlot;
      });
  Compare(
      "lock, edit, unlock and flush, " + std::to_string(records) + " records", 201, 2.0,
      [&] {
        Appointment edited;
        const bool done = file.LockRecord(first) && file.ReadRecord(&edited, first) &&
                          file.WriteRecord(&edited, first) == core::Result::kDone &&
                          file.UnlockRecord(first) && file.Flush();
        if (!done) Fail("edit");
      },
      [&] { writeBare(core::kFirstSlotOffset); });
  close(bare);
  std::filesystem::remove(beside);
}

// Google Benchmark finds the number of rounds that so short an operation needs.
const RecordFile* unchanging = nullptr;

void NothingChanged(benchmark::State& state) {
  RecordQuery query;
  query.AddMatchAll();
  if (!query.Run(*unchanging) || !query.Sort(*unchanging, core::kDayOrder)) Fail("sort");
  for ([[maybe_unused]] auto _ : state) benchmark::DoNotOptimize(query.RefreshIfChanged(*unchanging));
}
BENCHMARK(NothingChanged)->Unit(benchmark::kMicrosecond);

// Keeps the time that Google Benchmark found.
class Keep : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context& /*context*/) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    microseconds = runs.front().GetAdjustedRealTime();
  }

  double microseconds = 0;
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::printf("%-44s %15s %15s %8s %8s\n", "name", "measured", "reference", "ratio", "limit");
  for (const int records : {1000, 10000, 100000}) {
    const std::unique_ptr<RecordFile> file = Calendar(records);
    const int descriptor = open(file->Path().c_str(), O_RDONLY | O_CLOEXEC);
    DayLists(*file, descriptor, records);
    if (records == 10000) Sorting(*file, descriptor);
    if (records == 1000) {
      unchanging = file.get();
      Keep keep;
      benchmark::RunSpecifiedBenchmarks(&keep);
      Print("noticing that nothing changed", keep.microseconds, 5, 1);
    }
    Months(*file, records);
    Finding(*file, descriptor, records);
    Compacting(*file, records);
    Changing(*file, descriptor, records);
    close(descriptor);
  }
  std::filesystem::remove_all(Folder());
  return exceeded ? 1 : 0;
}
