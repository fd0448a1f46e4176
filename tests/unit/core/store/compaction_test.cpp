#include "core/store/compaction.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>

#include "core/calendar/calendar_file.h"
#include "core/store/record_query.h"
#include "gtest/gtest.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::FaultyCalls;
using tests::TemporaryCalendar;
using tests::TemporaryFolder;

constexpr std::int32_t kSecondSlot = 2625 + 2627;

std::vector<std::string> SubjectsInFileOrder(const RecordFile& file) {
  return tests::Subjects(file, tests::AllRecords(file));
}

// Three records, the second of them locked, with two free slots between them; closed.
struct HoleyCalendar : TemporaryCalendar {
  HoleyCalendar() {
    Add(Entry("a"));
    const std::int32_t firstHole = Add(Entry("b"));
    const std::int32_t locked = Add(Entry("c"));
    const std::int32_t secondHole = Add(Entry("d"));
    Add(Entry("e"));
    EXPECT_EQ(file.DeleteRecord(firstHole), core::Result::kDone);
    EXPECT_EQ(file.DeleteRecord(secondHole), core::Result::kDone);
    EXPECT_TRUE(file.LockRecord(locked));
    SetRefreshEnabled(true);
    file.Close();
  }
};

TEST(Compaction, KeepsLiveRecordsInOrderAndFreesTheirLocks) {
  HoleyCalendar calendar;
  chmod(calendar.Path().c_str(), 0640);
  std::vector<std::string> told;
  const CompactionWatcher watcher = {
      [&](const std::string& path, std::uint32_t slots) { told.push_back(path + std::to_string(slots)); },
      [&] { told.emplace_back("."); },
      [&] { told.emplace_back("end"); },
  };
  const RepairOutcome outcome = RepairCheck(calendar.Path(), true, watcher);
  EXPECT_TRUE(outcome.clean);
  EXPECT_EQ(outcome.message, "");
  EXPECT_EQ(told, (std::vector<std::string>{calendar.Path() + "5", ".", ".", ".", ".", ".", "end"}));
  EXPECT_EQ(calendar.Bytes().size(), 12U + 1581 + 1032 + 3 * 2627);
  EXPECT_EQ(tests::ModeOf(calendar.Path()), 0640U);

  ASSERT_TRUE(calendar.file.Open());
  EXPECT_EQ(SubjectsInFileOrder(calendar.file), (std::vector<std::string>{"a", "c", "e"}));
  EXPECT_TRUE(calendar.file.LockRecord(kSecondSlot));
  SetRefreshEnabled(true);
  EXPECT_EQ(tests::Value(calendar.Header().changeCounter), 17U);  // five added, two deleted
  EXPECT_EQ(tests::Value(calendar.Header().freeSlotBalance), 0);
}

TEST(Compaction, OfACleanFileOnlyWhenForced) {
  const HoleyCalendar calendar;
  const std::string before = calendar.Bytes();
  struct stat old = {};
  stat(calendar.Path().c_str(), &old);
  EXPECT_TRUE(RepairCheck(calendar.Path(), false).clean);
  struct stat now = {};
  stat(calendar.Path().c_str(), &now);
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_EQ(now.st_ino, old.st_ino);
}

TEST(Compaction, NeverOfAFileThatIsNotThereForOneselfAlone) {
  TemporaryCalendar calendar;  // open
  EXPECT_EQ(calendar.file.DeleteRecord(calendar.Add(Entry("a"))), core::Result::kDone);
  const std::string denied = "Program can't use \"" + calendar.Path() + "\".\r\nAccess has been denied";
  const std::string before = calendar.Bytes();
  const RepairOutcome forced = RepairCheck(calendar.Path(), true);
  EXPECT_TRUE(!forced.clean && forced.inUse);
  EXPECT_EQ(forced.message, denied);
  EXPECT_EQ(RepairCheck(calendar.Path(), false).message, "");
  EXPECT_EQ(calendar.Bytes(), before);

  calendar.file.Close();
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kLock, 1, EINVAL, FaultyCalls::kForEver);  // a file system without locks
  {
    RecordFile other(calendar.Path(), "");
    const RepairOutcome counted = RepairCheck(calendar.Path(), true);
    EXPECT_TRUE(!counted.clean && counted.counted);
    EXPECT_NE(counted.message.find("It may be open on another machine."), std::string::npos);
    EXPECT_TRUE(SaveCopy(other, calendar.Path()).counted);
    EXPECT_EQ(RepairCheck(calendar.Path(), false).message, "");

    // Who compacts it all the same takes nothing from its user, who is told before he writes again.
    EXPECT_TRUE(CompactCounted(calendar.Path()).clean);
    const Entry late("x");
    EXPECT_EQ(other.AddRecord(&late.appointment), Result::kFailed);
  }
  EXPECT_EQ(calendar.Bytes().size(), 2625U);
  EXPECT_TRUE(RepairCheck(calendar.Path(), false).clean);
  ASSERT_TRUE(calendar.file.Open());
  EXPECT_EQ(tests::Value(calendar.Header().openCount), 1U);
}

TEST(Compaction, KeepsWhatItWouldOtherwiseWriteOver) {
  const HoleyCalendar calendar;
  const std::string whole = calendar.Bytes();
  const TemporaryFolder folder;
  folder.Write("c.cld.temp", "yesterday's");
  folder.Write("c.cld.temp.1", "last year's");
  const std::string path = folder.Write("c.cld", whole.substr(0, whole.size() - 1));  // "e" is cut
  chmod(path.c_str(), 0600);
  const RepairOutcome outcome = RepairCheck(path, true);
  EXPECT_TRUE(outcome.clean);
  EXPECT_NE(outcome.message.find("c.cld.temp.2\""), std::string::npos) << outcome.message;
  EXPECT_NE(outcome.message.find("c.cld.cut.1\""), std::string::npos) << outcome.message;
  EXPECT_EQ(folder.Read("c.cld.temp.1"), "last year's");
  EXPECT_EQ(folder.Read("c.cld.temp.2"), "yesterday's");
  EXPECT_EQ(folder.Read("c.cld.cut.1"), whole.substr(whole.size() - 2627, 2626));
  struct stat about = {};
  stat(folder.Join("c.cld.cut.1").c_str(), &about);
  EXPECT_EQ(about.st_mode & 0777, 0600U);
  EXPECT_EQ(folder.Count(), 4U);
  const RecordFile file(path, "");
  EXPECT_EQ(SubjectsInFileOrder(file), (std::vector<std::string>{"a", "c"}));
}

TEST(Compaction, KeepsSlotsThatAreNeitherLiveNorFree) {
  const HoleyCalendar calendar;
  std::string bytes = calendar.Bytes();
  const std::size_t inUse = static_cast<std::size_t>(kSecondSlot) + 2627 + 4;  // of "c"
  bytes[inUse] = 3;
  const TemporaryFolder folder;
  const RepairOutcome outcome = RepairCheck(folder.Write("c.cld", bytes), true);
  EXPECT_TRUE(outcome.clean);
  EXPECT_NE(outcome.message.find("c.cld.damaged.1\""), std::string::npos) << outcome.message;
  EXPECT_EQ(folder.Read("c.cld.damaged.1"), bytes.substr(inUse - 4, 2627));
  EXPECT_EQ(folder.Read("c.cld").size(), 2625U + 2 * 2627);
  EXPECT_EQ(folder.Count(), 2U);
}

// What a compaction that was killed leaves is tidied away if it is nobody's only copy.
TEST(Compaction, TidiesLeftoversAwayThatHoldNothingOfTheirOwn) {
  const HoleyCalendar calendar;
  const std::string whole = calendar.Bytes();
  const auto slot = [&whole](std::size_t number) { return whole.substr(2625 + number * 2627, 2627); };
  const std::string compact = whole.substr(0, 2625) + slot(0) + slot(2) + slot(4);
  std::string changed = compact;
  changed[2625 + 1453] = 'z';  // the subject of "a"
  std::string foreign = compact;
  foreign[2625 + 6] ^= 1;  // its id
  const struct {
    const char* what;
    std::string leftover;
    bool old;
    bool stays;
  } kCases[] = {
      {"the same records", compact, false, false}, {"cut off", compact.substr(0, 5000), false, false},
      {"nothing yet", "", false, false},           {"other contents", changed, false, true},
      {"older contents", changed, true, false},    {"a record of its own", foreign, true, true},
  };
  for (const bool reach : {true, false}) {
    for (const auto& one : kCases) {
      platform::FileCalls& calls = platform::SystemFileCalls();
      const platform::FileCalls original = calls;
      if (!reach) calls.locksReach = [](int) { return false; };
      const TemporaryFolder folder;
      const std::string path = folder.Write("c.cld", whole);
      const std::string temp = folder.Write(reach ? "c.cld.temp" : "c.cld.temp-1", one.leftover);
      const auto age = std::chrono::hours(one.old ? 2 : 0);
      std::filesystem::last_write_time(temp, std::filesystem::file_time_type::clock::now() - age);
      const RepairOutcome outcome = RepairCheck(path, true);
      calls = original;
      EXPECT_TRUE(outcome.clean) << one.what;
      // Without a lock that would tell, a fresh one may be somebody's work, and is left where it is.
      const bool untouched = !reach && !one.old;
      EXPECT_EQ(folder.Count(), one.stays || untouched ? 2U : 1U) << one.what << reach;
      EXPECT_EQ(std::filesystem::exists(temp), untouched) << one.what << reach;
      EXPECT_EQ(outcome.message.find("c.cld.temp.1\"") != std::string::npos, one.stays && !untouched)
          << one.what;
    }
  }
}

TEST(Compaction, ThatFailsTellsWhyAndChangesNothing) {
  const HoleyCalendar calendar;
  const std::string before = calendar.Bytes();
  const std::string temp = calendar.Path() + ".temp";
  const struct {
    FaultyCalls::Call call;
    int nth;
    int error;
    std::string message;
  } kCases[] = {
      {FaultyCalls::kWrite, 1, ENOSPC, "Can't compact \"" + calendar.Path() + "\".\r\nThe disk is full."},
      {FaultyCalls::kFlush, 1, EIO,
       "Can't compact \"" + calendar.Path() + "\".\r\nReading or writing failed."},
      {FaultyCalls::kRename, 1, EACCES,
       "Compact: MoveFile: error.\r\n\"" + temp + "\"\r\nto\r\n\"" + calendar.Path() + "\"\r\n"},
  };
  for (const auto& failing : kCases) {
    FaultyCalls faults;
    faults.Fail(failing.call, failing.nth, failing.error, FaultyCalls::kForEver);
    const RepairOutcome outcome = RepairCheck(calendar.Path(), true);
    EXPECT_FALSE(outcome.clean);
    EXPECT_EQ(outcome.message, failing.message);
    EXPECT_EQ(faults.Count(FaultyCalls::kRename), failing.call == FaultyCalls::kRename ? 100 : 0);
    EXPECT_EQ(calendar.Bytes(), before);
    EXPECT_FALSE(platform::FileExists(temp));
  }
  // The folder may not be written.
  const std::filesystem::path folder = std::filesystem::path(calendar.Path()).parent_path();
  std::filesystem::permissions(calendar.Path(), std::filesystem::perms::all);
  std::filesystem::permissions(folder, std::filesystem::perms(0555));
  const int right = tests::RunUnprivileged([&] {
    return RepairCheck(calendar.Path(), true).message == "Program can't create \"" + temp + "\"." ? 1 : 0;
  });
  std::filesystem::permissions(folder, std::filesystem::perms(0755));
  EXPECT_EQ(right, 1);
}

TEST(Compaction, OfACopyLeavesTheSourceInUse) {
  HoleyCalendar calendar;
  ASSERT_TRUE(calendar.file.Open());
  const std::string before = calendar.Bytes();
  const TemporaryFolder folder;
  const std::string target = folder.Write("copy.cld", "an old file");
  {
    platform::File user;
    ASSERT_EQ(user.OpenShared(target), platform::FileResult::kDone);
    EXPECT_EQ(SaveCopy(calendar.file, target).message,
              "Program can't use \"" + target + "\".\r\nAccess has been denied");
    EXPECT_EQ(folder.Read("copy.cld"), "an old file");
  }
  // Through a link, and with the source's rights.
  chmod(calendar.Path().c_str(), 0600);
  std::filesystem::create_symlink("copy.cld", folder.Join("link.cld"));
  EXPECT_TRUE(SaveCopy(calendar.file, folder.Join("link.cld")).clean);
  EXPECT_TRUE(std::filesystem::is_symlink(folder.Join("link.cld")));
  EXPECT_TRUE(SaveCopy(calendar.file, folder.Join("new.cld")).clean);
  EXPECT_EQ(tests::ModeOf(folder.Join("new.cld")), 0600U);
  EXPECT_EQ(folder.Read("copy.cld"), folder.Read("new.cld"));
  EXPECT_EQ(calendar.Bytes(), before);
  HeaderBlock header;
  std::memcpy(&header, folder.Read("new.cld").data() + 12, sizeof header);
  EXPECT_EQ(tests::Value(header.openCount), 0U);
  EXPECT_EQ(tests::Value(header.freeSlotBalance), 0);
  // Not while another copy saves under the same new name: what it has written so far stays its own.
  {
    platform::File writing;
    ASSERT_EQ(writing.CreateExclusive(folder.Join("both.cld.temp")), platform::FileResult::kDone);
    EXPECT_FALSE(SaveCopy(calendar.file, folder.Join("both.cld")).clean);
    EXPECT_TRUE(std::filesystem::exists(folder.Join("both.cld.temp")));
  }
  // Nor over what came to the path meanwhile, be it new or in the place of another file.
  for (const char* name : {"come.cld", "copy.cld"}) {
    const CompactionWatcher meanwhile = {
        [&](const auto&, auto) { std::filesystem::rename(folder.Write("mv", "another"), folder.Join(name)); },
        {},
        {}};
    EXPECT_FALSE(SaveCopy(calendar.file, folder.Join(name), meanwhile).clean);
    EXPECT_EQ(folder.Read(name), "another");
    EXPECT_FALSE(std::filesystem::exists(folder.Join(name) + ".temp"));
  }
  // Not onto itself, by whatever name.
  std::filesystem::create_hard_link(calendar.Path(), calendar.Path() + ".hard");
  EXPECT_FALSE(SaveCopy(calendar.file, calendar.Path() + ".hard").clean);
  EXPECT_EQ(calendar.Bytes(), before);
  // What lost its name, and what took it: the copy is of what is open, a failure speaks of saving.
  std::filesystem::remove(calendar.Path());
  std::ofstream(calendar.Path()) << "a stranger";
  EXPECT_TRUE(SaveCopy(calendar.file, folder.Join("rescued.cld")).clean);
  EXPECT_EQ(folder.Read("rescued.cld"), folder.Read("new.cld"));
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kWrite, 1, ENOSPC, FaultyCalls::kForEver);
  EXPECT_EQ(SaveCopy(calendar.file, target).message, "Can't save \"" + target + "\".\r\nThe disk is full.");
}

}  // namespace
}  // namespace core
