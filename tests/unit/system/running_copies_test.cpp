#include "platform/system/running_copies.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "platform/system/file.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace {

using platform::HoldInstance;
using platform::RunningCopies;
using tests::ChildProcess;
using tests::UntilKilled;

// Every test has a runtime folder to itself.
class RunningCopiesTest : public testing::Test {
 protected:
  RunningCopiesTest() { setenv("XDG_RUNTIME_DIR", runtime.Path().c_str(), 1); }

  static bool Waits(const RunningCopies& copies) {
    pollfd descriptor = {copies.Descriptor(), POLLIN, 0};
    return poll(&descriptor, 1, 5000) == 1;
  }

  // Any bytes, sent to the socket of this process's first copy.
  void SendBytes(const std::string& bytes) const {
    const std::string path = runtime.Join("daybrix/copy-" + std::to_string(getpid()) + "-0.sock");
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const int sender = socket(AF_UNIX, SOCK_DGRAM, 0);
    EXPECT_EQ(sendto(sender, bytes.data(), bytes.size(), MSG_DONTWAIT,
                     reinterpret_cast<const sockaddr*>(&address), sizeof(address)),
              static_cast<ssize_t>(bytes.size()));
    close(sender);
  }

  std::size_t Sockets() const { return platform::ListFolder(runtime.Join("daybrix")).size(); }

  const tests::TemporaryFolder runtime;
};

TEST_F(RunningCopiesTest, OneProcessHoldsANameUntilItEnds) {
  const auto tryToHold = [](const char* name) {
    return ChildProcess([name](const ChildProcess::Signal&) { return HoldInstance(name) ? 1 : 0; })
        .ExitCode();
  };
  ChildProcess first([](const ChildProcess::Signal& ready) {
    if (HoldInstance("Tempoline") && HoldInstance("Tempoline")) ready();
    return UntilKilled();
  });
  ASSERT_TRUE(first.Ready());
  EXPECT_EQ(tryToHold("Tempoline"), 0);
  EXPECT_EQ(tryToHold("Nameleaf"), 1) << "another name is another matter";
  first.Kill();
  EXPECT_EQ(tryToHold("Tempoline"), 1);
  EXPECT_EQ(tryToHold("../Tempoline"), 0);
  EXPECT_EQ(tryToHold(""), 0);
}

TEST_F(RunningCopiesTest, NoticesReachEveryCopyButTheSender) {
  RunningCopies here;
  ASSERT_TRUE(here.Open());
  RunningCopies beside;
  ASSERT_TRUE(beside.Open());
  ChildProcess other([](const ChildProcess::Signal& ready) {
    RunningCopies copies;
    if (!copies.Open()) return 1;
    ready();
    std::int32_t code = 0;
    if (!Waits(copies) || !copies.Receive(code) || code != 100) return 2;
    copies.Broadcast(-101);
    return 0;
  });
  ASSERT_TRUE(other.Ready());
  here.Broadcast(100);
  EXPECT_EQ(other.ExitCode(), 0);
  std::int32_t code = 0;
  ASSERT_TRUE(here.Receive(code));
  EXPECT_EQ(code, -101);
  EXPECT_FALSE(here.Receive(code));
  std::int32_t second = 0;
  ASSERT_TRUE(beside.Receive(code) && beside.Receive(second));
  EXPECT_EQ(std::min(code, second), -101) << "whichever came first";
  EXPECT_EQ(std::max(code, second), 100);
}

TEST_F(RunningCopiesTest, SocketsOfTheDeadAreRemovedAndNobodyElses) {
  RunningCopies here;
  ASSERT_TRUE(here.Open());
  {
    ChildProcess other([](const ChildProcess::Signal& ready) {
      RunningCopies copies;
      copies.Open();
      ready();
      return UntilKilled();
    });
    ASSERT_TRUE(other.Ready());
    runtime.Write("daybrix/notes.txt", "");
    EXPECT_EQ(Sockets(), 3U);
    other.Kill();
  }
  EXPECT_EQ(Sockets(), 3U);
  here.Broadcast(100);
  EXPECT_EQ(Sockets(), 2U) << "this copy's and the stranger's file";
  {
    RunningCopies second;
    ASSERT_TRUE(second.Open()) << "a second one in a process has a socket of its own";
    EXPECT_EQ(Sockets(), 3U);
  }
  EXPECT_EQ(Sockets(), 2U) << "who ends in order tidies up";
}

TEST_F(RunningCopiesTest, ThrowsAwayWhatIsNoNotice) {
  RunningCopies here;
  ASSERT_TRUE(here.Open());
  RunningCopies beside;
  ASSERT_TRUE(beside.Open());
  std::int32_t code = 0;
  for (const std::size_t size : {0U, 3U, 5U, 16U}) SendBytes(std::string(size, 'x'));
  EXPECT_FALSE(here.Receive(code));
  SendBytes(std::string(5000, 'x'));
  beside.Broadcast(7);
  ASSERT_TRUE(here.Receive(code));
  EXPECT_EQ(code, 7);
  for (int i = 0; i < 5000; ++i) beside.Broadcast(i);  // far more than a socket holds: none of them waits
  int received = 0;
  while (here.Receive(code)) ++received;
  EXPECT_GT(received, 0);
}

TEST_F(RunningCopiesTest, UsesAFolderOnlyWhenItIsTheUsersAlone) {
  ASSERT_EQ(mkdir(runtime.Join("daybrix").c_str(), 0777), 0);
  ASSERT_EQ(chmod(runtime.Join("daybrix").c_str(), 0777), 0);
  {
    RunningCopies here;
    ASSERT_TRUE(here.Open());
    EXPECT_EQ(Sockets(), 1U);
    EXPECT_EQ(tests::ModeOf(runtime.Join("daybrix")), 0700U);
  }
  // Somebody else's folder, a link and a file of that name are passed over, and so is a place too long for a
  // socket: the copy goes to the folder in /tmp.
  const std::string elsewhere = runtime.Join("elsewhere");
  ASSERT_EQ(mkdir(elsewhere.c_str(), 0700), 0);
  ASSERT_EQ(rmdir(runtime.Join("daybrix").c_str()), 0);
  ASSERT_EQ(symlink(elsewhere.c_str(), runtime.Join("daybrix").c_str()), 0);
  RunningCopies here;
  EXPECT_TRUE(here.Open());
  EXPECT_TRUE(std::filesystem::is_empty(elsewhere));
  const std::string deep = runtime.Join(std::string(90, 'd'));
  ASSERT_EQ(mkdir(deep.c_str(), 0700), 0);
  setenv("XDG_RUNTIME_DIR", deep.c_str(), 1);
  RunningCopies second;
  EXPECT_TRUE(second.Open());
  EXPECT_TRUE(std::filesystem::is_empty(deep));
  if (geteuid() == 0) {
    ASSERT_EQ(unlink(runtime.Join("daybrix").c_str()), 0);
    ASSERT_EQ(mkdir(runtime.Join("daybrix").c_str(), 0777), 0);
    ASSERT_EQ(chown(runtime.Join("daybrix").c_str(), 65534, 65534), 0);
    setenv("XDG_RUNTIME_DIR", runtime.Path().c_str(), 1);
    RunningCopies third;
    EXPECT_TRUE(third.Open());
    EXPECT_EQ(Sockets(), 0U);
  }
}

}  // namespace
