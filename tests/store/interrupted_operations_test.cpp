// What is left when an operation of the store is interrupted: the power goes, the disk fills up or fails, at
// each of its system calls in turn.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

#include "core/calendar/appointment.h"
#include "core/store/compaction.h"
#include "gtest/gtest.h"
#include "store/store_operations.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"

namespace tests {
namespace {

constexpr int kPowerCut = 7;

class InterruptedOperation : public testing::TestWithParam<StoreOperation> {};

void ExpectOneOf(const std::vector<Records>& states, const std::string& path, const std::string& when) {
  const Records found = RecordsAt(path);
  EXPECT_NE(std::find(states.begin(), states.end(), found), states.end())
      << when << ": " << path << " has " << testing::PrintToString(found);
}

// Both files hold what they may, before and after they are repaired, and are in order then.
void ExpectNothingLost(const StoreOperation& operation, const StoreFiles& files, const std::string& when) {
  ExpectOneOf(operation.states, files.Path(), when);
  ExpectOneOf(operation.otherStates, files.OtherPath(), when);
  const Records before = RecordsAt(files.Path());
  const core::RepairOutcome repair = core::RepairCheck(files.Path(), false);
  EXPECT_TRUE(repair.clean) << when << repair.message;
  EXPECT_EQ(RecordsAt(files.Path()), before) << when;
  EXPECT_EQ(Disorder(files.Path()), "") << when;
  if (!platform::FileExists(files.OtherPath())) return;
  EXPECT_TRUE(core::RepairCheck(files.OtherPath(), false).clean) << when;
  EXPECT_EQ(Disorder(files.OtherPath()), "") << when;
}

void ExpectDone(const StoreOperation& operation, const StoreFiles& files, const std::string& when) {
  EXPECT_EQ(RecordsAt(files.Path()), operation.states.back()) << when;
  EXPECT_EQ(RecordsAt(files.OtherPath()), operation.otherStates.back()) << when;
}

TEST_P(InterruptedOperation, ByAPowerCutBeforeAnyCall) {
  const StoreOperation& operation = GetParam();
  int code = kPowerCut;
  int nth = 0;
  while (code == kPowerCut) {
    const std::string when = "cut before call " + std::to_string(++nth);
    const StoreFiles files;
    ChildProcess child([&](const auto&) {
      FaultyCalls faults;
      faults.Before(FaultyCalls::kAny, nth, [] { _exit(kPowerCut); });
      return operation.run(files) ? 0 : 1;
    });
    code = child.ExitCode();
    ExpectNothingLost(operation, files, when);
    if (code == kPowerCut) continue;
    ExpectDone(operation, files, when);
  }
  EXPECT_EQ(code, 0);
  RecordProperty("cuts", nth - 1);
}

TEST_P(InterruptedOperation, ByAFailureOfAnyCall) {
  const StoreOperation& operation = GetParam();
  const struct Failure {
    const char* name;
    FaultyCalls::Call call;
    int error;  // 0 for a transfer that falls short by a byte
    int times;
  } kFailures[] = {
      {"no space", FaultyCalls::kWrite, ENOSPC, FaultyCalls::kForEver},
      {"short writes", FaultyCalls::kWrite, 0, FaultyCalls::kForEver},
      {"short reads", FaultyCalls::kRead, 0, FaultyCalls::kForEver},
      {"one error", FaultyCalls::kAny, EIO, 1},
      {"errors from then on", FaultyCalls::kAny, EIO, FaultyCalls::kForEver},
  };
  int failed = 0;
  for (const Failure& failure : kFailures) {
    int calls = 0;
    for (int nth = 1; nth <= calls + 1; ++nth) {
      const std::string when = failure.name + (" at call " + std::to_string(nth));
      const StoreFiles files;
      bool done = false;
      {
        FaultyCalls faults;
        if (failure.error == 0) faults.Shorten(failure.call, nth, 1, failure.times);
        if (failure.error != 0) faults.Fail(failure.call, nth, failure.error, failure.times);
        done = operation.run(files);
        calls = faults.Count(failure.call);
        failed += done ? 0 : 1;
      }
      core::SetRefreshEnabled(true);
      if (done) ExpectDone(operation, files, when);
      const auto slots = std::filesystem::file_size(files.Path()) - core::kFirstSlotOffset;
      EXPECT_TRUE(failure.call != FaultyCalls::kWrite || slots % sizeof(core::Appointment) == 0) << when;
      ExpectNothingLost(operation, files, when);
    }
  }
  EXPECT_GT(failed, 0);
  RecordProperty("failed", failed);
}

INSTANTIATE_TEST_SUITE_P(Store, InterruptedOperation, testing::ValuesIn(StoreOperations()),
                         [](const auto& operation) { return operation.param.name; });

}  // namespace
}  // namespace tests
