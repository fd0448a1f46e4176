// Files that are replaced, renamed and read as a whole.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <string>

#include "platform/system/file.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_folder.h"

namespace {

using platform::ReadWholeFile;
using platform::RenameFile;
using platform::ReplaceFile;
using tests::FaultyCalls;
using tests::TemporaryFolder;

bool Replace(const std::string& path, const std::string& content) {
  return ReplaceFile(path, content.data(), content.size());
}

bool WriteNew(const std::string& path, const std::string& content) {
  return platform::WriteNewFile(path, content.data(), content.size()) == platform::FileResult::kDone;
}

unsigned ModeOf(const std::string& path) {
  struct stat about = {};
  return stat(path.c_str(), &about) == 0 ? about.st_mode & 07777 : 0;
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
  for (const char* name : {"relative", "absolute", "dangling"}) {
    struct stat about = {};
    EXPECT_TRUE(lstat(folder.Join(name).c_str(), &about) == 0 && S_ISLNK(about.st_mode)) << name;
  }
}

TEST(ReplaceFileTest, FailureLeavesTheOldFileAndNoOther) {
  struct Case {
    const char* what;
    std::function<void(FaultyCalls&)> arrange;
  };
  const Case cases[] = {
      {"disk full", [](FaultyCalls& faults) { faults.Fail(FaultyCalls::kWrite, 1, ENOSPC); }},
      {"disk full half-way",
       [](FaultyCalls& faults) {
         faults.Shorten(FaultyCalls::kWrite, 1, 2);
         faults.Fail(FaultyCalls::kWrite, 2, ENOSPC);
       }},
      {"flush", [](FaultyCalls& faults) { faults.Fail(FaultyCalls::kFlush, 1, EIO); }},
      {"rename", [](FaultyCalls& faults) { faults.Fail(FaultyCalls::kRename, 1, EACCES); }},
  };
  for (const Case& one : cases) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a", "old");
    for (const char* name : {"a", "none"}) {
      FaultyCalls faults;
      one.arrange(faults);
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

TEST(WriteNewFileLinkTest, FollowsLinksAndKeepsThem) {
  const TemporaryFolder folder;
  ASSERT_EQ(symlink("unborn", folder.Join("dangling").c_str()), 0);
  ASSERT_EQ(symlink("circle", folder.Join("circle").c_str()), 0);
  EXPECT_TRUE(WriteNew(folder.Join("dangling"), "born"));
  EXPECT_EQ(folder.Read("unborn"), "born");
  EXPECT_FALSE(WriteNew(folder.Join("circle"), "lost"));
  struct stat about = {};
  EXPECT_TRUE(lstat(folder.Join("circle").c_str(), &about) == 0 && S_ISLNK(about.st_mode));
  EXPECT_EQ(folder.Count(), 3U);
}

TEST(RenameFileTest, PassesPermissionsOnAndFailsWhole) {
  const TemporaryFolder folder;
  const std::string from = folder.Write("a.temp", "new");
  const std::string to = folder.Write("a", "old");
  ASSERT_EQ(chmod(to.c_str(), 0606), 0);
  {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kRename, 1, EIO);
    EXPECT_FALSE(RenameFile(from, to));
  }
  EXPECT_EQ(folder.Read("a"), "old");
  EXPECT_EQ(folder.Read("a.temp"), "new");
  EXPECT_TRUE(RenameFile(from, to));
  EXPECT_EQ(folder.Read("a"), "new");
  EXPECT_EQ(ModeOf(to), 0606U);
  EXPECT_FALSE(RenameFile(from, to)) << "there is none any more";
  EXPECT_EQ(folder.Read("a"), "new");
  EXPECT_TRUE(platform::RemoveFile(to));
  EXPECT_FALSE(platform::RemoveFile(to));
  EXPECT_FALSE(platform::FileExists(to));
}

TEST(ReadWholeFileTest, HoldsToItsLimitAndReportsErrors) {
  const TemporaryFolder folder;
  const std::string big(200000, 'x');
  const std::string path = folder.Write("a", big);
  std::string content;
  EXPECT_TRUE(ReadWholeFile(path, big.size(), content));
  EXPECT_EQ(content, big);
  EXPECT_FALSE(ReadWholeFile(path, big.size() - 1, content));
  EXPECT_EQ(content, "");
  EXPECT_TRUE(ReadWholeFile(path, SIZE_MAX, content));
  EXPECT_EQ(content.size(), big.size());
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
  EXPECT_TRUE(platform::MakeFolder(folder.Join("a/b/c")));
  EXPECT_TRUE(platform::MakeFolder(folder.Join("a/b/c/")));
  EXPECT_TRUE(platform::FileExists(folder.Join("a/b/c")));
  folder.Write("file", "");
  EXPECT_FALSE(platform::MakeFolder(folder.Join("file")));
  EXPECT_FALSE(platform::MakeFolder(folder.Join("file/a")));
  EXPECT_FALSE(platform::MakeFolder(""));
}

}  // namespace
