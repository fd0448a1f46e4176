// Eight processes at work on one calendar at the same time, left alone and killed at random.
//
// DAYBRIX_STORE_SECONDS and DAYBRIX_STORE_KILLS make it longer.
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <random>

#include "core/compaction.h"
#include "gtest/gtest.h"
#include "store/busy_worker.h"
#include "store/store_operations.h"
#include "support/child_process.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

constexpr int kWorkers = 8;

int FromEnvironment(const char* name, int otherwise) {
  const char* value = std::getenv(name);
  return value == nullptr ? otherwise : std::atoi(value);
}

class ManyCopies : public testing::Test {
 protected:
  ManyCopies() {
    for (int i = 0; i < kSharedRecords; ++i) {
      const core::Appointment record = WorkRecord(SharedSubject(i), 0);
      calendar.file.AddRecord(&record);
    }
    calendar.file.Close();
  }

  // Life number `life` of a worker.
  std::unique_ptr<ChildProcess> Start(int worker, int life, int milliseconds) {
    std::string name(1, static_cast<char>('A' + worker));
    name.append(std::to_string(life)).append("-");
    journals.push_back(journalFolder.Join(name));
    const Work work = {calendar.Path(), journals.back(), name, static_cast<unsigned>(worker * 1000 + life),
                       milliseconds};
    return std::make_unique<ChildProcess>([work](const auto&) { return RunWorker(work); });
  }

  std::vector<std::unique_ptr<ChildProcess>> StartAll(int milliseconds) {
    std::vector<std::unique_ptr<ChildProcess>> workers(kWorkers);
    for (int i = 0; i < kWorkers; ++i) workers[static_cast<std::size_t>(i)] = Start(i, 0, milliseconds);
    return workers;
  }

  Expectation Expected() const {
    Expectation expected;
    for (const std::string& journal : journals) expected.Read(journal);
    std::cout << expected.Added() << " added, " << expected.Edited() << " edited, " << expected.Deleted()
              << " deleted, " << expected.Counted() << " counted, " << expected.Compacted()
              << " compactions, " << expected.Interrupted() << " interrupted\n";
    return expected;
  }

  TemporaryCalendar calendar;
  TemporaryFolder journalFolder;
  std::vector<std::string> journals;
};

TEST_F(ManyCopies, WorkingAtOnceLoseNothing) {
  const int milliseconds = 1000 * FromEnvironment("DAYBRIX_STORE_SECONDS", 5);
  const std::vector<std::unique_ptr<ChildProcess>> workers = StartAll(milliseconds);
  for (const auto& worker : workers) EXPECT_EQ(worker->ExitCode(), 0);
  const Expectation expected = Expected();
  EXPECT_EQ(expected.Compare(calendar.Path()), "");
  EXPECT_EQ(Disorder(calendar.Path()), "");
  EXPECT_GT(expected.Compacted(), 0);
  EXPECT_GT(expected.Counted(), 0);
}

TEST_F(ManyCopies, KilledAtAnyMomentLoseNothing) {
  const int kills = FromEnvironment("DAYBRIX_STORE_KILLS", 200);
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
  const core::RepairOutcome repair = core::RepairCheck(calendar.Path(), false);
  EXPECT_TRUE(repair.clean) << repair.message;
  const Expectation expected = Expected();
  EXPECT_EQ(expected.Compare(calendar.Path()), "");
  EXPECT_EQ(Disorder(calendar.Path()), "");
  EXPECT_GT(expected.Interrupted(), 0);
}

}  // namespace
}  // namespace tests
