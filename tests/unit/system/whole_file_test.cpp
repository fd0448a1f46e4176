// Files that are replaced, renamed and read as a whole.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
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
using tests::ChildProcess;
using tests::FaultyCalls;
using tests::TemporaryFolder;

bool Replace(const std::string& path, const std::string& content) {
  return ReplaceFile(path, content.data(), content.size());
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
  for (const mode_t mode : {0600, 0666}) {
    const std::string path = folder.Write("a", "old");
    ASSERT_EQ(chmod(path.c_str(), mode), 0);
    EXPECT_TRUE(Replace(path, "second"));
    EXPECT_EQ(ModeOf(path), mode);
  }
  umask(old);
  EXPECT_EQ(folder.Read("a"), "second");
  EXPECT_TRUE(Replace(folder.Join("a"), ""));
  EXPECT_EQ(folder.Read("a"), "");
  EXPECT_EQ(folder.Count(), 2U);
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

TEST(ReplaceFileTest, PathAlwaysNamesOneWholeFile) {
  const TemporaryFolder folder;
  const std::string one(50000, '1');
  const std::string two(70000, '2');
  const std::string path = folder.Write("a", one);
  ChildProcess writer([&](const ChildProcess::Signal& ready) {
    ready();
    for (;;) {
      if (!Replace(path, two) || !Replace(path, one)) return 1;
    }
  });
  ASSERT_TRUE(writer.Ready());
  int seenTwo = 0;
  for (int i = 0; i < 20000 && (i < 200 || seenTwo == 0); ++i) {
    std::string content;
    ASSERT_TRUE(ReadWholeFile(path, 100000, content));
    ASSERT_TRUE(content == one || content == two) << content.size();
    if (content == two) ++seenTwo;
  }
  EXPECT_GT(seenTwo, 0);
  writer.Kill();
  const std::string left = folder.Read("a");
  EXPECT_TRUE(left == one || left == two);
  EXPECT_TRUE(Replace(path, "x")) << "what the dead left behind is in nobody's way";
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
