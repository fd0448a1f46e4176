// Files that are replaced, renamed and read as a whole, and whose they are then.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>

#include "platform/system/file.h"
#include "platform/system/file_rights.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_folder.h"

namespace {

using platform::ReadWholeFile;
using platform::RenameFile;
using platform::ReplaceFile;
using tests::FaultyCalls;
using tests::ModeOf;
using tests::TemporaryFolder;

bool Replace(const std::string& path, const std::string& content) {
  return ReplaceFile(path, content.data(), content.size());
}

bool WriteNew(const std::string& path, const std::string& content) {
  return platform::WriteNewFile(path, content.data(), content.size()) == platform::FileResult::kDone;
}

TEST(ReplaceFileTest, KeepsPermissionsAndLeavesNothingBehind) {
  const TemporaryFolder folder;
  const mode_t old = umask(027);
  EXPECT_TRUE(Replace(folder.Join("new"), "first"));
  EXPECT_EQ(ModeOf(folder.Join("new")), 0640U);
  umask(002);
  EXPECT_TRUE(Replace(folder.Join("shared"), "first"));
  EXPECT_EQ(ModeOf(folder.Join("shared")), 0664U) << "who shares files with a group asks for it by the mask";
  for (const mode_t mode : {0600U, 0666U}) {
    const std::string path = folder.Write("a", "old");
    ASSERT_EQ(chmod(path.c_str(), mode), 0);
    EXPECT_TRUE(Replace(path, "second"));
    EXPECT_EQ(ModeOf(path), mode);
  }
  umask(old);
  EXPECT_EQ(folder.Read("a"), "second");
  EXPECT_TRUE(Replace(folder.Join("a"), ""));
  EXPECT_EQ(folder.Read("a"), "");
  EXPECT_EQ(folder.Count(), 3U);
}

TEST(ReplaceFileTest, KeepsOwnerAndGroup) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  const std::string from = folder.Write("b", "new");
  ASSERT_TRUE(geteuid() != 0 || chown(path.c_str(), 1234, 2345) == 0);
  ASSERT_EQ(chmod(path.c_str(), 0660), 0);
  struct stat before = {};
  ASSERT_EQ(stat(path.c_str(), &before), 0);
  for (const bool renamed : {false, true}) {
    ASSERT_TRUE(renamed ? RenameFile(from, path) : Replace(path, "new"));
    struct stat after = {};
    ASSERT_EQ(stat(path.c_str(), &after), 0);
    EXPECT_EQ(after.st_uid, before.st_uid);
    EXPECT_EQ(after.st_gid, before.st_gid);
    EXPECT_EQ(after.st_mode, before.st_mode);
  }
}

TEST(ReplaceFileTest, FollowsLinks) {
  const TemporaryFolder folder;
  ASSERT_TRUE(platform::MakeFolder(folder.Join("shared")));
  folder.Write("shared/real", "old");
  ASSERT_EQ(symlink("shared/real", folder.Join("relative").c_str()), 0);
  ASSERT_EQ(symlink(folder.Join("relative").c_str(), folder.Join("absolute").c_str()), 0);
  ASSERT_EQ(symlink("shared/unborn", folder.Join("dangling").c_str()), 0);
  ASSERT_EQ(symlink("circle", folder.Join("circle").c_str()), 0);
  EXPECT_EQ(platform::ResolvedPath(folder.Join("absolute")), folder.Join("shared/real"));
  EXPECT_EQ(platform::ResolvedPath(folder.Join("none")), folder.Join("none"));
  EXPECT_TRUE(Replace(folder.Join("absolute"), "new"));
  EXPECT_EQ(folder.Read("shared/real"), "new");
  EXPECT_TRUE(Replace(folder.Join("dangling"), "born"));
  EXPECT_EQ(folder.Read("shared/unborn"), "born");
  folder.Write("temp", "renamed");
  EXPECT_TRUE(RenameFile(folder.Join("temp"), folder.Join("relative")));
  EXPECT_EQ(folder.Read("shared/real"), "renamed");
  std::filesystem::remove(folder.Join("shared/unborn"));
  EXPECT_TRUE(WriteNew(folder.Join("dangling"), "new"));
  EXPECT_EQ(folder.Read("shared/unborn"), "new");
  EXPECT_FALSE(WriteNew(folder.Join("circle"), "lost"));
  for (const char* name : {"relative", "absolute", "dangling", "circle"}) {
    struct stat about = {};
    EXPECT_TRUE(lstat(folder.Join(name).c_str(), &about) == 0 && S_ISLNK(about.st_mode)) << name;
  }
}

TEST(ReplaceFileTest, FailureLeavesTheOldFileAndNoOther) {
  const struct {
    const char* what;
    FaultyCalls::Call call;
    int nth;
    int error;
  } kCases[] = {{"disk full", FaultyCalls::kWrite, 1, ENOSPC},
                {"disk full half-way", FaultyCalls::kWrite, 2, ENOSPC},
                {"flush", FaultyCalls::kFlush, 1, EIO},
                {"rename", FaultyCalls::kRename, 1, EACCES}};
  for (const auto& one : kCases) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "old");
    for (const char* name : {"a", "none"}) {
      FaultyCalls faults;
      faults.Shorten(FaultyCalls::kWrite, 1, 2);
      faults.Fail(one.call, one.nth, one.error);
      EXPECT_FALSE(Replace(folder.Join(name), "newer")) << one.what;
    }
    EXPECT_EQ(folder.Read("a"), "old") << one.what;
    EXPECT_EQ(folder.Count(), 1U) << one.what;
  }
}

TEST(ReplaceFileTest, GoesOnAfterSignalsAndFlushesBeforeItRenames) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  FaultyCalls faults;
  for (const auto call : {FaultyCalls::kWrite, FaultyCalls::kFlush, FaultyCalls::kRename}) {
    faults.Fail(call, 1, EINTR);
  }
  faults.Shorten(FaultyCalls::kWrite, 2, 3);
  int flushedBefore = 0;
  faults.Before(FaultyCalls::kRename, 2, [&] { flushedBefore = faults.Count(FaultyCalls::kFlush); });
  EXPECT_TRUE(Replace(path, "newer"));
  EXPECT_EQ(folder.Read("a"), "newer");
  EXPECT_EQ(flushedBefore, 2) << "the file, interrupted once";
  EXPECT_EQ(faults.Count(FaultyCalls::kFlush), 3) << "and then the folder";
}

TEST(ReplaceFileTest, RefusesWhatIsNoWritableFile) {
  const TemporaryFolder folder;
  ASSERT_TRUE(platform::MakeFolder(folder.Join("sub")));
  ASSERT_EQ(mkfifo(folder.Join("pipe").c_str(), 0666), 0);
  EXPECT_FALSE(Replace(folder.Join("sub"), "new"));
  EXPECT_FALSE(Replace(folder.Join("pipe"), "new"));
  EXPECT_FALSE(Replace(folder.Join("none/a"), "new"));
  folder.Write("temp", "new");
  EXPECT_FALSE(RenameFile(folder.Join("temp"), folder.Join("sub")));
  EXPECT_FALSE(RenameFile(folder.Join("temp"), folder.Join("pipe")));
  EXPECT_EQ(folder.Count(), 3U);

  const std::string locked = folder.Write("locked", "old");
  ASSERT_EQ(chmod(locked.c_str(), 0444), 0);
  ASSERT_EQ(chmod(folder.Path().c_str(), 0777), 0);
  EXPECT_EQ(tests::RunUnprivileged([&] { return Replace(locked, "new") ? 1 : 0; }), 0);
  EXPECT_EQ(folder.Read("locked"), "old");
}

// The three ways a new file gets its name, from the one that every local file system knows to the last
// resort.
class WriteNewFileTest : public testing::TestWithParam<int> {
 protected:
  void LeaveOutWays(FaultyCalls& faults) const {
    if (GetParam() > 0) faults.Fail(FaultyCalls::kRenameNew, 1, EINVAL, FaultyCalls::kForEver);
    if (GetParam() > 1) faults.Fail(FaultyCalls::kLink, 1, EPERM, FaultyCalls::kForEver);
  }
};
INSTANTIATE_TEST_SUITE_P(Ways, WriteNewFileTest, testing::Values(0, 1, 2));

TEST_P(WriteNewFileTest, ReplacesNothingAndLeavesNothingBehind) {
  const TemporaryFolder folder;
  FaultyCalls faults;
  LeaveOutWays(faults);
  EXPECT_TRUE(WriteNew(folder.Join("a"), "first"));
  EXPECT_FALSE(WriteNew(folder.Join("a"), "second"));
  EXPECT_FALSE(WriteNew(folder.Path(), "second"));
  EXPECT_FALSE(WriteNew(folder.Join("none/a"), "second"));
  EXPECT_EQ(folder.Read("a"), "first");

  // Somebody makes the file after it was found missing.
  const FaultyCalls::Call calls[] = {FaultyCalls::kRenameNew, FaultyCalls::kLink, FaultyCalls::kFlush};
  const FaultyCalls::Call last = calls[GetParam()];
  faults.Before(last, faults.Count(last) + 1, [&] { folder.Write("b", "theirs"); });
  EXPECT_FALSE(WriteNew(folder.Join("b"), "ours"));
  EXPECT_EQ(folder.Read("b"), "theirs");

  faults.Fail(FaultyCalls::kWrite, faults.Count(FaultyCalls::kWrite) + 1, ENOSPC);
  EXPECT_EQ(platform::WriteNewFile(folder.Join("c"), "full", 4), platform::FileResult::kDiskFull);
  EXPECT_EQ(folder.Count(), 2U);
}

TEST(ReadWholeFileTest, HoldsToItsLimitAndReportsErrors) {
  const TemporaryFolder folder;
  const std::string big(200000, 'x');
  const std::string path = folder.Write("a", big);
  std::string content;
  EXPECT_TRUE(ReadWholeFile(path, big.size(), content));
  EXPECT_EQ(content, big);
  EXPECT_TRUE(ReadWholeFile(path, SIZE_MAX, content));
  EXPECT_FALSE(ReadWholeFile(path, big.size() - 1, content));
  EXPECT_EQ(content, "");
  EXPECT_TRUE(ReadWholeFile(folder.Write("empty", ""), 0, content));
  EXPECT_EQ(content, "");

  ASSERT_EQ(mkfifo(folder.Join("pipe").c_str(), 0666), 0);
  EXPECT_FALSE(ReadWholeFile(folder.Join("pipe"), 10, content));
  EXPECT_FALSE(ReadWholeFile(folder.Path(), 10, content));
  EXPECT_FALSE(ReadWholeFile(folder.Join("none"), 10, content));
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kRead, 1, EINTR);
  faults.Shorten(FaultyCalls::kRead, 2, 100);
  EXPECT_TRUE(ReadWholeFile(path, big.size(), content));
  EXPECT_EQ(content, big);
  faults.Fail(FaultyCalls::kRead, faults.Count(FaultyCalls::kRead) + 2, EIO);
  EXPECT_FALSE(ReadWholeFile(path, big.size(), content)) << "half a file is no file";
  EXPECT_EQ(content, "");
}

TEST(FullPathTest, BeginsAtTheRootAndKeepsWhatLeadsElsewhere) {
  const std::string here = std::filesystem::current_path();
  EXPECT_EQ(platform::FullPath("/a//b/./c/"), "/a/b/c");
  EXPECT_EQ(platform::FullPath("/a/link/../b"), "/a/link/../b");
  EXPECT_EQ(platform::FullPath("x.cld"), here + "/x.cld");
  EXPECT_EQ(platform::FullPath("./"), here);
  EXPECT_EQ(platform::FullPath("//"), "/");
}

TEST(MakeFolderTest, MakesEveryLevel) {
  const TemporaryFolder folder;
  EXPECT_TRUE(platform::MakeFolder(folder.Join("a/b/c/")) && platform::FileExists(folder.Join("a/b/c")));
  folder.Write("file", "");
  EXPECT_FALSE(platform::MakeFolder(folder.Join("file")));
  EXPECT_FALSE(platform::MakeFolder(folder.Join("file/a")));
  EXPECT_FALSE(platform::MakeFolder(""));
}

using platform::Acl;
using platform::AclForOthersFile;
using platform::AclOfMode;

constexpr std::uint32_t kNone = platform::kAclNoId;

TEST(FileRights, NameWhoDoesNotOwnTheFileAnyMore) {
  const Acl listed = {{1, 6, kNone}, {2, 7, 30}, {4, 6, kNone}, {16, 4, kNone}, {32, 0, kNone}};
  const struct {
    const char* what;
    Acl old;
    std::int64_t owner;
    std::int64_t group;
    Acl expected;
  } kCases[] = {
      {"nobody changed", AclOfMode(0640), -1, -1, AclOfMode(0640)},
      {"owner",
       AclOfMode(0664),
       20,
       -1,
       {{1, 6, kNone}, {2, 6, 20}, {4, 6, kNone}, {16, 6, kNone}, {32, 4, kNone}}},
      {"group: another group's people are others",
       AclOfMode(0664),
       -1,
       9,
       {{1, 6, kNone}, {4, 4, kNone}, {8, 6, 9}, {16, 6, kNone}, {32, 4, kNone}}},
      {"a mask takes away as before, and the named are in order",
       listed,
       20,
       -1,
       {{1, 6, kNone}, {2, 6, 20}, {2, 4, 30}, {4, 4, kNone}, {16, 6, kNone}, {32, 0, kNone}}},
  };
  for (const auto& one : kCases) {
    EXPECT_EQ(AclForOthersFile(one.old, one.owner, one.group), one.expected) << one.what;
    Acl read;
    ASSERT_TRUE(platform::ReadAcl(platform::AclBytes(one.expected), read));
    EXPECT_EQ(read, one.expected);
  }
  Acl none;
  EXPECT_FALSE(platform::ReadAcl("", none));
  EXPECT_FALSE(platform::ReadAcl(std::string(7, 2), none));
}

// A colleague whom the list lets write replaces the file; its owner goes on using it.
TEST(FileRights, StayWithTheFormerOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can act for two users";
  constexpr uid_t kOwner = 1234;
  constexpr uid_t kNobody = 65534;
  const tests::TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  ASSERT_EQ(chmod(folder.Path().c_str(), 0777), 0);
  ASSERT_EQ(chown(path.c_str(), kOwner, kOwner), 0);
  const std::string list =
      platform::AclBytes({{1, 6, kNone}, {2, 6, kNobody}, {4, 4, kNone}, {16, 6, kNone}, {32, 0, kNone}});
  if (setxattr(path.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) != 0) {
    GTEST_SKIP() << "no access control lists here";
  }
  EXPECT_EQ(tests::RunUnprivileged([&] { return platform::ReplaceFile(path, "new", 3) ? 1 : 0; }), 1);
  struct stat about = {};
  ASSERT_EQ(stat(path.c_str(), &about), 0);
  EXPECT_EQ(about.st_uid, kNobody);
  EXPECT_EQ(about.st_mode & 07, 0U);
  tests::ChildProcess owner([&](const auto&) {
    if (setresgid(kOwner, kOwner, kOwner) != 0 || setresuid(kOwner, kOwner, kOwner) != 0) return 2;
    return access(path.c_str(), R_OK | W_OK) == 0 ? 0 : 1;
  });
  EXPECT_EQ(owner.ExitCode(), 0);
}

}  // namespace
