#include "platform/system/lock_file.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/system/lock_reach.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace {

using platform::GuardResult;
using platform::LockFile;
using tests::ChildProcess;
using tests::TemporaryFolder;

constexpr const char* kForeign =
    "far 77 2004-03-14T10:43:12 00112233445566778899aabbccddeeff 00000005 another-machine 1\n";

std::int64_t nowMs = 0;

// A file whose locks do not reach everybody, and a clock that only the test moves.
class LockFileTest : public testing::Test {
 protected:
  LockFileTest() : original(platform::SystemFileCalls()) {
    platform::SystemFileCalls().locksReach = [](int) { return false; };
    platform::SystemFileCalls().nowMs = [] { return nowMs; };
    nowMs += 1'000'000;
  }
  ~LockFileTest() override { platform::SystemFileCalls() = original; }

  bool IsTaken() const { return std::filesystem::exists(lock); }
  GuardResult Try() const { return TryAt(path); }
  static GuardResult TryAt(const std::string& target) {
    LockFile other;
    return other.Take(target, 150);  // long enough to look at what is in the way
  }

  const platform::FileCalls original;
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  const std::string lock = folder.Join(".a.guard");
};

TEST_F(LockFileTest, IsOneHoldersUntilHeGivesItBack) {
  LockFile one;
  ASSERT_EQ(one.Take(path, 0), GuardResult::kHeld);
  EXPECT_EQ(Try(), GuardResult::kBusy);
  nowMs += platform::kAbandonedMs - 1000;
  EXPECT_TRUE(one.Keep()) << "late, but nobody came";
  EXPECT_EQ(folder.Read(".a.guard").find(" 00000001 ") == std::string::npos, false);
  EXPECT_EQ(Try(), GuardResult::kBusy);
  nowMs += platform::kAbandonedMs - 1000;
  EXPECT_EQ(Try(), GuardResult::kBusy) << "it has changed since the first look";
  one.Release();
  EXPECT_EQ(folder.Count(), 1U);
  EXPECT_EQ(Try(), GuardResult::kHeld);
  LockFile none;
  EXPECT_EQ(none.Take(folder.Join("none/a"), 0), GuardResult::kGone);
  // On a full disk, too.
  platform::SystemFileCalls().write = [](int, const void*, std::size_t, std::int64_t) -> std::int64_t {
    errno = ENOSPC;
    return -1;
  };
  ASSERT_EQ(one.Take(path, 0), GuardResult::kHeld);
  EXPECT_EQ(Try(), GuardResult::kBusy);
  one.Release();
  EXPECT_FALSE(IsTaken());
}

TEST_F(LockFileTest, OfTheGoneIsTakenAway) {
  // Of another machine, when it did not change for long enough; so is what has no line.
  for (const char* line : {kForeign, "", "?"}) {
    folder.Write(".a.guard", line);
    EXPECT_EQ(Try(), GuardResult::kBusy) << line;
    nowMs += platform::kAbandonedMs - 1;
    EXPECT_EQ(Try(), GuardResult::kBusy) << line;
    nowMs += 1;
    EXPECT_EQ(Try(), GuardResult::kHeld) << line;
    EXPECT_EQ(folder.Count(), 1U) << "and no claim is left";
  }
  const std::string longName(240, 'n');
  folder.Write("." + longName + ".guard", kForeign);
  EXPECT_EQ(TryAt(folder.Join(longName)), GuardResult::kBusy);
  nowMs += platform::kAbandonedMs;
  EXPECT_EQ(TryAt(folder.Join(longName)), GuardResult::kHeld);
  // So is whatever else has its name, but for a folder.
  std::filesystem::create_symlink("nowhere", lock);
  EXPECT_EQ(Try(), GuardResult::kBusy);
  nowMs += platform::kAbandonedMs;
  EXPECT_EQ(Try(), GuardResult::kHeld);
  std::filesystem::create_directory(lock);
  EXPECT_EQ(Try(), GuardResult::kBusy);
  std::filesystem::remove(lock);
  // Of this machine, at once.
  ChildProcess other([this](const ChildProcess::Signal& ready) {
    LockFile held;
    if (held.Take(path, 0) == GuardResult::kHeld) ready();
    return tests::UntilKilled();
  });
  ASSERT_TRUE(other.Ready());
  EXPECT_EQ(Try(), GuardResult::kBusy);
  other.Kill();
  EXPECT_TRUE(IsTaken());
  EXPECT_EQ(Try(), GuardResult::kHeld);
}

TEST_F(LockFileTest, IsTakenAwayByOneTaker) {
  folder.Write(".a.guard", kForeign);
  const std::string claim = ".00112233445566778899aabbccddeeff-00000005.guard.1";
  EXPECT_EQ(Try(), GuardResult::kBusy);
  nowMs += platform::kAbandonedMs;
  folder.Write(claim, "");
  EXPECT_EQ(Try(), GuardResult::kBusy) << "another one is about to";
  EXPECT_EQ(folder.Read(".a.guard"), kForeign);
  nowMs += platform::kAbandonedMs;
  EXPECT_EQ(Try(), GuardResult::kHeld) << "who died over it";
  EXPECT_EQ(folder.Count(), 1U);
}

TEST_F(LockFileTest, IsLostByAHolderWhoWasStopped) {
  platform::File file;
  ASSERT_EQ(file.OpenExclusive(path), platform::FileResult::kDone);
  EXPECT_TRUE(file.KeepHold());
  folder.Write(".a.guard", kForeign);  // taken over meanwhile
  nowMs += platform::kAbandonedMs;
  EXPECT_EQ(file.WriteAt("new", 3, 0), -1);
  EXPECT_FALSE(file.KeepHold());
  file.Close();
  EXPECT_EQ(folder.Read("a"), "old");
  EXPECT_EQ(folder.Read(".a.guard"), kForeign) << "another's is left alone";

  LockFile late;
  std::filesystem::remove(lock);
  ASSERT_EQ(late.Take(path, 0), GuardResult::kHeld);
  nowMs += platform::kAbandonedMs;
  late.Release();
  EXPECT_FALSE(IsTaken()) << "one's own goes, however late";
}

TEST_F(LockFileTest, GuardsAFileThatIsOpenedAnewInside) {
  platform::File file;
  ASSERT_EQ(file.OpenShared(path), platform::FileResult::kDone);
  EXPECT_FALSE(file.LocksReach());
  {
    const platform::FileGuard guard(file);
    EXPECT_TRUE(guard.Held());
    EXPECT_TRUE(IsTaken());
    EXPECT_EQ(Try(), GuardResult::kBusy);
  }
  EXPECT_FALSE(IsTaken());
  const std::string other = folder.Write("b", "new");
  std::filesystem::rename(other, path);
  EXPECT_EQ(platform::FileGuard(file).Result(), GuardResult::kReplaced);
  EXPECT_EQ(file.Refresh(), platform::FileAtPath::kReplaced);
  std::filesystem::remove(path);
  EXPECT_EQ(platform::FileGuard(file).Result(), GuardResult::kGone);
  EXPECT_FALSE(IsTaken());
  // Who opens a file that is missing while its name is held waits for it.
  folder.Write(".a.guard", kForeign);
  ChildProcess replacer([this](const auto&) {
    usleep(100'000);
    folder.Write("a", "new");
    return 0;
  });
  EXPECT_EQ(file.OpenReadOnly(path), platform::FileResult::kDone);
  // A lock file that outlived its file keeps nobody from making a new one for ever.
  file.Close();
  std::filesystem::remove(path);
  platform::SetGuardPatience(150);
  EXPECT_EQ(platform::WriteNewFile(path, "new", 3), platform::FileResult::kInUse);
  nowMs += platform::kAbandonedMs;
  EXPECT_EQ(platform::WriteNewFile(path, "new", 3), platform::FileResult::kDone);
  platform::SetGuardPatience(2000);
}

using platform::FindMount;
using platform::Mount;
using platform::MountLocksReach;

constexpr std::string_view kMounts =
    "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw,errors=remount-ro\n"
    "36 22 0:31 / /home/a rw,nosuid - fuse.sshfs a@b:/c rw,user_id=0\n"
    "37 22 0:32 / /n rw,relatime shared:2 master:1 - nfs4 server:/dir rw,vers=4.2,local_lock=none\n"
    "137 22 0:33 / /v rw - virtiofs share rw";

TEST(LockReach, FollowsFromTheMount) {
  const struct {
    Mount mount;
    bool reach;
  } kCases[] = {
      {{"fuseblk", "rw", "rw,user_id=0"}, true},  // a disk of this machine
      {{"nfs", "rw", "rw,vers=3,local_lock=none"}, true},
      {{"nfs4", "rw", "rw,local_lock=flock"}, true},  // other locks than ours
      {{"nfs", "rw", "rw,nolock,local_lock=all"}, false},
      {{"nfs4", "rw,local_lock=posix", "rw"}, false},
      {{"cifs", "rw", "rw,vers=3.1.1,nobrlx"}, true},
      {{"smb3", "rw", "rw,nobrl"}, false},
      {{"fuse", "rw", "rw"}, false},
      {{"fuse.sshfs", "rw", "rw"}, false},
      {{"9p", "rw", "rw,trans=virtio"}, false},
      {{"virtiofs", "rw", "rw"}, false},
      {{"something.new", "rw", "rw"}, false},
  };
  for (const auto& one : kCases) EXPECT_EQ(MountLocksReach(one.mount), one.reach) << one.mount.type;
  EXPECT_TRUE(platform::IsLocalDisk(0xEF53));       // ext4
  EXPECT_FALSE(platform::IsLocalDisk(0x65735546));  // FUSE
}

TEST(LockReach, FindsAMountByItsNumber) {
  Mount mount;
  ASSERT_TRUE(FindMount(kMounts, "37", mount));
  EXPECT_EQ(mount.type, "nfs4");
  EXPECT_EQ(mount.options, "rw,relatime");
  EXPECT_EQ(mount.superOptions, "rw,vers=4.2,local_lock=none");
  ASSERT_TRUE(FindMount(kMounts, "137", mount));
  EXPECT_EQ(mount.type, "virtiofs");
  EXPECT_EQ(mount.superOptions, "rw");
  EXPECT_FALSE(FindMount(kMounts, "7", mount));
  EXPECT_FALSE(FindMount("", "37", mount));
}

}  // namespace
