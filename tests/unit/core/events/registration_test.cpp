#include "core/events/registration.h"

#include <signal.h>
#include <unistd.h>

#include <filesystem>

#include "core/ini_file.h"
#include "gtest/gtest.h"
#include "support/document.h"
#include "support/talking_server.h"
#include "unit/core/program_folder.h"

namespace core {
namespace {

using tests::Talk;

const RegistrationLimits kShort{200, 200};

std::string Documented(const char* block, std::size_t size) {
  return tests::DocumentedBytes("registration.md", block, size);
}

void Configure(const std::string& host, const std::string& port) {
  ASSERT_TRUE(IniFile("Daybrix.ini").WriteString("eServer", "server", host));
  ASSERT_TRUE(IniFile("Daybrix.ini").WriteString("eServer", "port", port));
}

// A server that expects the documented request.
class Server : public tests::TalkingServer {
 public:
  explicit Server(const Talk& talk) : TalkingServer(Documented("hex request", 100), talk) {}
};

Talk Say(const std::string& bytes, int pauseMs = 0) {
  return [bytes, pauseMs](int connection) {
    for (std::size_t at = 0; at < bytes.size(); at += pauseMs == 0 ? bytes.size() : 1) {
      send(connection, bytes.data() + at, pauseMs == 0 ? bytes.size() : 1, MSG_NOSIGNAL);
      usleep(static_cast<useconds_t>(pauseMs) * 1000);
    }
  };
}

void Reset(int connection) {
  const linger now = {1, 0};
  setsockopt(connection, SOL_SOCKET, SO_LINGER, &now, sizeof now);
  close(connection);
}

// Stops the program, which waits for the answer, for a moment.
void SayAfterAStop(int connection) {
  usleep(20'000);
  kill(getppid(), SIGSTOP);
  usleep(20'000);
  kill(getppid(), SIGCONT);
  usleep(20'000);
  Say(std::string(4, '\0'))(connection);
}

std::ptrdiff_t OpenDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return std::distance(begin(all), end(all));
}

TEST(Registration, AnswersOfTheServer) {
  const std::string zero(4, '\0');
  const struct {
    const char* name;
    Talk talk;
    std::uint32_t status;
    int text;
  } kCases[] = {
      {"registered", Say(zero), kRegistered, 136},
      {"there already", Say(Documented("hex answer", 4)), kAddressTaken, 137},
      {"2", Say(std::string("\2\0\0\0", 4)), 2, 138},
      {"big-endian 1", Say(std::string("\0\0\0\1", 4)), 16777216, 138},
      {"one of our own codes", Say(std::string("\xC\0\0\0", 4)), 12, 138},
      {"nothing", Say(""), 0xFFFFFFFF, 138},
      {"three bytes", Say(std::string(3, '\0')), 0xFF000000, 138},
      {"one byte at a time", Say(zero, 30), 0xFFFFFF00, 138},
      {"four thousand bytes", Say(std::string(4000, '\0')), kRegistered, 136},
      {"after a stop", SayAfterAStop, kRegistered, 136},
      {"a reset", Reset, kExchangeFailed, 138},
      {"silence", [](int) { usleep(600'000); }, kExchangeFailed, 138},
  };
  const std::ptrdiff_t before = OpenDescriptors();
  for (const auto& one : kCases) {
    Server server(one.talk);
    Configure("127.0.0.1", server.port + "x");
    int waited = 0;
    const std::uint32_t status = RegisterOnServer([&waited] { ++waited; }, kShort);
    EXPECT_EQ(status, one.status) << one.name;
    EXPECT_EQ(RegistrationTextId(status), one.text) << one.name;
    EXPECT_TRUE(server.WasAskedRightly()) << one.name;
    if (one.status == kExchangeFailed && one.talk.target<void (*)(int)>() == nullptr) {
      EXPECT_GT(waited, 4) << "the window can be painted meanwhile";
    }
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST(Registration, WithoutAServer) {
  const std::ptrdiff_t before = OpenDescriptors();
  const struct {
    std::string host;
    const char* port;
    std::uint32_t code;
  } kCases[] = {{"127.0.0.1", "", kNoConnection},
                {"127.0.0.1", "1", kNoConnection},
                {"no.such.host.invalid", "80", kHostNotFound},
                {std::string(300, 'h'), "80", kHostNotFound},
                {"::1", "80", kHostNotFound},
                {"", "", kHostNotFound}};
  for (const auto& one : kCases) {
    Configure(one.host, one.port);
    EXPECT_EQ(RegisterOnServer(nullptr, kShort), one.code) << one.host << ':' << one.port;
  }
  EXPECT_EQ(OpenDescriptors(), before);
}

TEST(Registration, FieldsAreFilledAndPortsAreNumbers) {
  const RegistrationRequest full = MakeRegistrationRequest(std::string(70, 'e'), std::string(32, 's'));
  EXPECT_EQ(std::string(full.email, 64) + std::string(full.secondText, 32),
            std::string(64, 'e') + std::string(32, 's'));
  for (const auto& [text, port] : {std::pair{"80x", 80}, std::pair{"", 0}, std::pair{"99999", 34463},
                                   std::pair{"x80", 0}, std::pair{"4294967376", 80}}) {
    EXPECT_EQ((EventServer{"", text}).PortNumber(), port) << text;
  }
}

}  // namespace
}  // namespace core
