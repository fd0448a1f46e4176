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

#include "core/calendar/repeat_rule.h"
#include "core/store/compaction.h"
#include "core/store/record_query.h"
#include "measuring.h"

namespace {

using core::RecordQuery;
using namespace measuring;

constexpr core::Date kDay{14, 3, 2004};

// ---- The comparisons ----

void DayLists(RecordFile& file, int descriptor, int records) {
  std::vector<char> buffer(kRun);
  RecordQuery query;
  query.AddCallbackCondition(0, &kDay, sizeof kDay, core::OccursOnDate, core::Connector::kAnd);
  Compare(
      "list of a day, " + std::to_string(records) + " records", Rounds(records), 1.5,
      [&] { query.Run(file) ? query.Sort(file, core::kDayOrder) : false; },
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
  measuring::PrintHead();
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
    Compacting(*file, records);
    Changing(*file, descriptor, records);
    close(descriptor);
  }
  std::filesystem::remove_all(Folder());
  return measuring::exceeded ? 1 : 0;
}
