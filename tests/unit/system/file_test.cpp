#include "platform/system/file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <thread>

#include "platform/system/clock.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_folder.h"

namespace {

using platform::File;
using platform::FileAtPath;
using platform::FileGuard;
using platform::FileInUse;
using platform::FileResult;
using platform::GuardResult;
using tests::ChildProcess;
using tests::FaultyCalls;
using tests::TemporaryFolder;
using tests::UntilKilled;

void SleepMs(int ms) {
  std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

std::string TextAt(const File& file, std::size_t size, std::int64_t offset) {
  std::string text(size, '?');
  const std::int64_t moved = file.ReadAt(text.data(), size, offset);
  return moved < 0 ? "failed" : text.substr(0, static_cast<std::size_t>(moved));
}

TEST(FileTest, ReadsAndWritesInPlace) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "0123456789");
  File file;
  ASSERT_EQ(file.OpenShared(path), FileResult::kDone);
  EXPECT_EQ(file.WriteAt("xy", 2, 4), 2);
  EXPECT_EQ(folder.Read("a"), "0123xy6789");
  EXPECT_EQ(TextAt(file, 4, 3), "3xy6");
  EXPECT_EQ(TextAt(file, 4, 8), "89") << "the end of the file comes short";
  EXPECT_EQ(TextAt(file, 4, 50), "");
  EXPECT_EQ(file.WriteAt("z", 1, 12), 1);
  EXPECT_EQ(file.Size(), 13) << "and no lock makes it longer";
  EXPECT_TRUE(file.Flush());
  EXPECT_EQ(TextAt(file, 4, -1), "failed");
  EXPECT_EQ(file.WriteAt("z", 1, -1), -1);

  File reader;
  ASSERT_EQ(reader.OpenReadOnly(path), FileResult::kDone);
  EXPECT_EQ(TextAt(reader, 4, 3), "3xy6");
  EXPECT_EQ(reader.WriteAt("z", 1, 0), -1);
  EXPECT_FALSE(FileGuard(reader).Held()) << "who may not write may not guard";
  EXPECT_TRUE(reader.UsedByOthers());
  EXPECT_TRUE(file.UsedByOthers());
  reader.Close();
  EXPECT_FALSE(file.UsedByOthers());

  File moved = std::move(file);
  EXPECT_EQ(TextAt(moved, 1, 0), "0");
  moved.Close();
  EXPECT_FALSE(FileInUse(path)) << "closing gives the share back";
  EXPECT_EQ(TextAt(moved, 1, 0), "failed");
  EXPECT_EQ(moved.WriteAt("z", 1, 0) + moved.Size(), -2);
  EXPECT_FALSE(moved.Flush());
}

TEST(FileTest, OpensNothingButRegularFilesAndWaitsForNone) {
  const TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.Join("pipe").c_str(), 0666), 0);
  ASSERT_EQ(symlink("nowhere", folder.Join("link").c_str()), 0);
  File file;
  for (const std::string& path :
       {folder.Join("missing"), folder.Join("link"), folder.Write("a", "") + "/b", std::string()}) {
    EXPECT_EQ(file.OpenShared(path), FileResult::kMissing) << path;
  }
  EXPECT_EQ(file.OpenShared(folder.Path()), FileResult::kIsFolder);
  EXPECT_EQ(file.OpenShared(folder.Join("pipe")), FileResult::kNoRegularFile);
  EXPECT_EQ(file.OpenShared("/dev/null"), FileResult::kNoRegularFile);
  EXPECT_EQ(file.CreateExclusive(folder.Path()), FileResult::kIsFolder);
  EXPECT_EQ(file.CreateExclusive(folder.Join("pipe")), FileResult::kNoRegularFile);
  EXPECT_EQ(file.CreateExclusive(folder.Join("none/a")), FileResult::kMissing);
  ASSERT_EQ(symlink("elsewhere", folder.Join("dangling").c_str()), 0);
  EXPECT_EQ(file.CreateExclusive(folder.Join("dangling")), FileResult::kFailed);
  EXPECT_FALSE(file.IsOpen());
  EXPECT_TRUE(FileInUse(folder.Join("missing")) && FileInUse(folder.Join("pipe")) &&
              FileInUse(folder.Path()));
}

TEST(FileTest, TellsDeniedFromMissing) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  ASSERT_EQ(chmod(path.c_str(), 0444), 0);
  ASSERT_EQ(chmod(folder.Path().c_str(), 0555), 0);
  const int result = tests::RunUnprivileged([&] {
    File file;
    const bool denied = file.OpenShared(path) == FileResult::kDenied;
    const bool notCreated = file.CreateExclusive(folder.Join("new")) == FileResult::kDenied;
    return (denied ? 1 : 0) + (notCreated ? 2 : 0) + (FileInUse(path) ? 4 : 0);
  });
  chmod(folder.Path().c_str(), 0755);
  EXPECT_EQ(result, 7);
}

TEST(FileTest, IsInUseWhileAnyProcessHasItOpenAndNotAfterItDied) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  EXPECT_FALSE(FileInUse(path));
  ChildProcess other([&](const ChildProcess::Signal& ready) {
    File file;
    if (file.OpenShared(path) != FileResult::kDone) return 1;
    ready();
    return UntilKilled();
  });
  ASSERT_TRUE(other.Ready());
  EXPECT_TRUE(FileInUse(path));
  {
    File file;
    EXPECT_EQ(file.OpenShared(path), FileResult::kDone) << "the file is shared";
    EXPECT_TRUE(FileInUse(path));
  }
  File file;
  EXPECT_EQ(file.OpenExclusive(path), FileResult::kInUse);
  EXPECT_EQ(file.CreateExclusive(path), FileResult::kInUse);
  EXPECT_EQ(folder.Read("a"), "old") << "what others have open is not emptied";
  other.Kill();
  EXPECT_FALSE(FileInUse(path));
  EXPECT_EQ(file.CreateExclusive(path), FileResult::kDone);
  EXPECT_TRUE(FileInUse(path)) << "one's own use counts";
  EXPECT_EQ(file.Size(), 0);
}

TEST(FileTest, WaitsForAnExclusiveHolderButNotForEver) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  ChildProcess other([&](const ChildProcess::Signal& ready) {
    File file;
    if (file.OpenExclusive(path) != FileResult::kDone) return 1;
    ready();
    return UntilKilled();
  });
  ASSERT_TRUE(other.Ready());
  File file;
  const std::int64_t start = platform::TickMs();
  EXPECT_EQ(file.OpenShared(path), FileResult::kInUse);
  EXPECT_GE(platform::TickMs() - start, 1900);
  EXPECT_LT(platform::TickMs() - start, 10000);
  other.Kill();
  EXPECT_EQ(file.OpenShared(path), FileResult::kDone);
}

TEST(FileTest, OpensTheNewFileWhenACompactionEnds) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  ChildProcess other([&](const ChildProcess::Signal& ready) {
    File source;
    File target;
    if (source.OpenExclusive(path) != FileResult::kDone) return 1;
    if (target.CreateExclusive(path + ".temp") != FileResult::kDone) return 2;
    ready();
    SleepMs(100);
    if (target.WriteAt("new", 3, 0) != 3 || !platform::RenameFile(path + ".temp", path)) return 3;
    SleepMs(100);  // the new file is held, too, until its maker is through with it
    return target.WriteAt("NEW", 3, 0) == 3 ? 0 : 4;
  });
  ASSERT_TRUE(other.Ready());
  File file;
  ASSERT_EQ(file.OpenShared(path), FileResult::kDone);
  EXPECT_EQ(TextAt(file, 9, 0), "NEW");
  EXPECT_EQ(other.ExitCode(), 0);
}

TEST(FileTest, OpensAgainWhenThePathWasGivenAwayBeforeTheShare) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  const std::string other = folder.Write("b", "new");
  FaultyCalls faults;
  faults.Before(FaultyCalls::kLock, 1, [&] { std::filesystem::rename(other, path); });
  File file;
  ASSERT_EQ(file.OpenShared(path), FileResult::kDone);
  EXPECT_EQ(TextAt(file, 9, 0), "new");
  EXPECT_TRUE(FileInUse(path));

  // Given away and gone: there is no file to open.
  faults.Before(FaultyCalls::kLock, faults.Count(FaultyCalls::kLock) + 1, [&] { unlink(path.c_str()); });
  EXPECT_EQ(file.OpenShared(path), FileResult::kMissing);
}

TEST(FileTest, GuardGivesUpOnAStuckProcess) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  File file;
  ASSERT_EQ(file.OpenShared(path), FileResult::kDone);
  ChildProcess other([&](const ChildProcess::Signal& ready) {
    File held;
    held.OpenShared(path);
    const FileGuard guard(held);
    if (guard.Held()) ready();
    return UntilKilled();
  });
  ASSERT_TRUE(other.Ready());
  EXPECT_EQ(FileGuard(file).Result(), GuardResult::kBusy);
  EXPECT_EQ(TextAt(file, 3, 0), "old") << "reading needs no guard";
  other.Kill();
  EXPECT_TRUE(FileGuard(file).Held());
  EXPECT_TRUE(FileGuard(file).Held()) << "a guard that went out of scope is given back";
  File closed;
  EXPECT_FALSE(FileGuard(closed).Held());
}

TEST(FileTest, GuardIsNotHeldOverAFileThatThePathNamesNoMore) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  File file;
  ASSERT_EQ(file.OpenShared(path), FileResult::kDone);
  EXPECT_EQ(file.PathState(), FileAtPath::kSame);
  std::filesystem::rename(path, folder.Join("b"));
  EXPECT_EQ(FileGuard(file).Result(), GuardResult::kGone);
  EXPECT_EQ(file.PathState(), FileAtPath::kGone);
  folder.Write("a", "new");
  EXPECT_EQ(FileGuard(file).Result(), GuardResult::kReplaced);
  EXPECT_EQ(file.PathState(), FileAtPath::kReplaced);
  std::filesystem::rename(folder.Join("b"), path);
  FaultyCalls faults;  // moved away while the lock is waited for
  faults.Before(FaultyCalls::kLock, 1, [&] { std::filesystem::rename(path, folder.Join("b")); });
  EXPECT_EQ(FileGuard(file).Result(), GuardResult::kGone);
}

TEST(FileTest, WorksWithoutLocksWhereTheFileSystemHasNone) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  for (const int error : {EINVAL, ENOLCK, EOPNOTSUPP, ENOSYS}) {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kLock, 1, error, FaultyCalls::kForEver);
    File file;
    EXPECT_EQ(file.OpenShared(path), FileResult::kDone) << error;
    EXPECT_TRUE(FileGuard(file).Held()) << error;
    EXPECT_FALSE(FileInUse(path)) << error;
  }
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kLock, 1, EINTR, 3);
  File file;
  EXPECT_EQ(file.OpenShared(path), FileResult::kDone) << "a signal is no refusal";
  faults.Fail(FaultyCalls::kLock, faults.Count(FaultyCalls::kLock) + 1, EIO, FaultyCalls::kForEver);
  EXPECT_FALSE(FileGuard(file).Held()) << "a lock that failed protects nothing";
  EXPECT_EQ(File().OpenShared(path), FileResult::kFailed);
}

TEST(FileTest, TransfersGoOnAfterSignalsAndPartialMoves) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "0123456789");
  FaultyCalls faults;
  File file;
  ASSERT_EQ(file.OpenShared(path), FileResult::kDone);
  faults.Fail(FaultyCalls::kRead, 1, EINTR, 2);
  faults.Shorten(FaultyCalls::kRead, 3, 7);
  faults.Fail(FaultyCalls::kRead, 4, EINTR);
  EXPECT_EQ(TextAt(file, 10, 0), "0123456789");
  EXPECT_EQ(faults.Count(FaultyCalls::kRead), 5);
  faults.Fail(FaultyCalls::kWrite, 1, EINTR);
  faults.Shorten(FaultyCalls::kWrite, 2, 4);
  EXPECT_EQ(file.WriteAt("abcdef", 6, 2), 6);
  EXPECT_EQ(folder.Read("a"), "01abcdef89");
  faults.Fail(FaultyCalls::kFlush, 1, EINTR);
  EXPECT_TRUE(file.Flush());
}

TEST(FileTest, ReportsWhatAFullOrBrokenDiskMoved) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "0123456789");
  FaultyCalls faults;
  File file;
  ASSERT_EQ(file.OpenShared(path), FileResult::kDone);
  faults.Shorten(FaultyCalls::kWrite, 1, 4);
  faults.Fail(FaultyCalls::kWrite, 2, ENOSPC, 2);
  EXPECT_EQ(file.WriteAt("abcdef", 6, 0), 2) << "full in the middle";
  EXPECT_EQ(folder.Read("a"), "ab23456789");
  EXPECT_EQ(file.WriteAt("abcdef", 6, 0), -1) << "full from the start";
  EXPECT_EQ(file.LastWrite(), FileResult::kDiskFull);
  faults.Shorten(FaultyCalls::kRead, 1, 3);
  faults.Fail(FaultyCalls::kRead, 2, EIO, 2);
  EXPECT_EQ(TextAt(file, 8, 0), "ab234");
  EXPECT_EQ(TextAt(file, 8, 0), "failed");
  faults.Fail(FaultyCalls::kFlush, 1, EIO);
  EXPECT_FALSE(file.Flush());
  EXPECT_EQ(file.LastWrite(), FileResult::kFailed);
}

TEST(FileTest, DescriptorsAreNotInheritedByOtherPrograms) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  File file;
  ASSERT_EQ(file.OpenShared(path), FileResult::kDone);
  int found = 0;
  for (int number = 0; number < 256; ++number) {
    std::error_code none;
    const auto link = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(number), none);
    if (none || link != path) continue;
    ++found;
    EXPECT_NE(fcntl(number, F_GETFD) & FD_CLOEXEC, 0);
  }
  EXPECT_EQ(found, 1);
}

}  // namespace
