// A server on this machine, in a process of its own, that takes one request and then talks.
#pragma once

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>
#include <string>

#include "support/child_process.h"

namespace tests {

using Talk = std::function<void(int connection)>;

class TalkingServer {
 public:
  TalkingServer(const std::string& expected, const Talk& talk)
      : listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* any = reinterpret_cast<sockaddr*>(&address);
    EXPECT_TRUE(bind(listener, any, size) == 0 && listen(listener, 1) == 0 &&
                getsockname(listener, any, &size) == 0);
    port = std::to_string(ntohs(address.sin_port));
    child = std::make_unique<ChildProcess>([&](const auto&) {
      const int connection = accept(listener, nullptr, nullptr);
      std::string request(expected.size(), '\0');
      const ssize_t got = recv(connection, request.data(), request.size(), MSG_WAITALL);
      const bool right = got == static_cast<ssize_t>(request.size()) && request == expected;
      talk(connection);
      return right ? 0 : 1;
    });
  }
  ~TalkingServer() { EXPECT_EQ(close(listener), 0); }
  TalkingServer(const TalkingServer&) = delete;
  TalkingServer& operator=(const TalkingServer&) = delete;

  bool WasAskedRightly() { return child->ExitCode() == 0; }
  std::string port;

 private:
  int listener;
  std::unique_ptr<ChildProcess> child;
};

}  // namespace tests
