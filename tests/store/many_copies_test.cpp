// Eight processes at work on one calendar at the same time, left alone and killed at random: on a local disk,
// and on two mounts of one folder through which no lock of one is seen in the other, as on two machines.
//
// DAYBRIX_STORE_SECONDS and DAYBRIX_STORE_KILLS make it longer.
#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <random>

#include "core/store/compaction.h"
#include "gtest/gtest.h"
#include "store/busy_worker.h"
#include "store/store_operations.h"
#include "store/two_mounts.h"
#include "support/child_process.h"
#include "support/from_environment.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

constexpr int kWorkers = 8;

class ManyCopies : public testing::TestWithParam<bool> {
 protected:
  ManyCopies() {
    if (GetParam()) mounts = std::make_unique<TwoMounts>(calendar.Folder());
    for (int i = 0; i < kSharedRecords; ++i) {
      const core::Appointment record = WorkRecord(SharedSubject(i), 0);
      EXPECT_EQ(calendar.file.AddRecord(&record), core::Result::kDone);
    }
    calendar.file.Close();
  }

  // Life number `life` of a worker.
  std::unique_ptr<ChildProcess> Start(int worker, int life, int milliseconds) {
    std::string name(1, static_cast<char>('A' + worker));
    name.append(std::to_string(life)).append("-");
    journals.push_back(journalFolder.Join(name));
    const Work work = {PathOf(worker), journals.back(),
                       name,           static_cast<unsigned>(worker * 1000 + life),
                       milliseconds,   mounts != nullptr && !mounts->AreMounted()};
    return std::make_unique<ChildProcess>([work](const auto&) { return RunWorker(work); });
  }

  std::vector<std::unique_ptr<ChildProcess>> StartAll(int milliseconds) {
    std::vector<std::unique_ptr<ChildProcess>> workers(kWorkers);
    for (int i = 0; i < kWorkers; ++i) workers[static_cast<std::size_t>(i)] = Start(i, 0, milliseconds);
    return workers;
  }

  // Where a worker finds the calendar.
  std::string PathOf(int worker) const {
    return mounts == nullptr ? calendar.Path() : mounts->Folder(worker % 2) + "/calendar.cld";
  }

  // Brings the calendar in order when all are gone.
  core::RepairOutcome Repair() const {
    return GetParam() ? core::CompactCounted(calendar.Path()) : core::RepairCheck(calendar.Path(), false);
  }

  // Opens the calendar again and again, through either mount, until it is told to stop.
  int LookOn() const {
    signal(SIGTERM, [](int) { _exit(0); });
    for (int turn = 0;; ++turn) {
      platform::File file;
      core::HeaderBlock header;
      std::uint32_t slotSize = 0;
      const platform::FileResult opened = file.OpenReadOnly(PathOf(turn));
      if (opened == platform::FileResult::kInUse) continue;  // a compaction took long
      if (opened != platform::FileResult::kDone ||
          core::CheckRecordFile(file, header, slotSize) != core::OpenError::kNone) {
        return 1;
      }
      file.Close();
      usleep(500);
    }
  }

  Expectation Expected() const {
    Expectation expected;
    for (const std::string& journal : journals) expected.Read(journal);
    return expected;
  }

  TemporaryCalendar calendar;
  std::unique_ptr<TwoMounts> mounts;
  TemporaryFolder journalFolder;
  std::vector<std::string> journals;
};

TEST_P(ManyCopies, WorkingAtOnceLoseNothing) {
  const int milliseconds = 1000 * FromEnvironment("DAYBRIX_STORE_SECONDS", 3);
  const std::vector<std::unique_ptr<ChildProcess>> workers = StartAll(milliseconds);
  ChildProcess onlooker([this](const auto&) { return LookOn(); });
  for (const auto& worker : workers) EXPECT_EQ(worker->ExitCode(), 0);
  onlooker.Stop();
  EXPECT_EQ(onlooker.ExitCode(), 0) << "the path named no whole file";
  const Expectation expected = Expected();
  EXPECT_EQ(expected.Compare(calendar.Path()), "");
  EXPECT_EQ(Disorder(calendar.Path()), "");
  EXPECT_GT(expected.Compacted(), 0);
  EXPECT_GT(expected.Counted(), 0);
}

TEST_P(ManyCopies, KilledAtAnyMomentLoseNothing) {
  const int kills = FromEnvironment("DAYBRIX_STORE_KILLS", 100);
  constexpr int kForLong = 600'000;
  std::mt19937 random(7);
  std::vector<std::unique_ptr<ChildProcess>> workers = StartAll(kForLong);
  for (int life = 1; life <= kills; ++life) {
    usleep(static_cast<useconds_t>(1000 + random() % 40'000));
    const auto victim = random() % kWorkers;
    workers[victim]->Kill();
    workers[victim] = Start(static_cast<int>(victim), life, kForLong);
  }
  for (const auto& worker : workers) worker->Kill();
  const core::RepairOutcome repair = Repair();
  EXPECT_TRUE(repair.clean) << repair.message;
  const Expectation expected = Expected();
  EXPECT_EQ(expected.Compare(calendar.Path()), "");
  EXPECT_EQ(Disorder(calendar.Path()), "");
  EXPECT_GT(expected.Interrupted(), 0);
}

INSTANTIATE_TEST_SUITE_P(Store, ManyCopies, testing::Bool(),
                         [](const auto& far) { return far.param ? "OnTwoMachines" : "OnOneMachine"; });

}  // namespace
}  // namespace tests
