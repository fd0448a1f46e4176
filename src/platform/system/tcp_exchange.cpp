#include "platform/system/tcp_exchange.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/system/descriptor.h"

namespace platform {
namespace {

constexpr auto kLookPause = std::chrono::milliseconds(20);

bool LimitTime(int socket, int option, int milliseconds) {
  const timeval limit = {milliseconds / 1000, milliseconds % 1000 * 1000L};
  return setsockopt(socket, SOL_SOCKET, option, &limit, sizeof limit) == 0;
}

bool FindAddress(const TcpRequest& request, sockaddr_in& address) {
  addrinfo wanted = {};
  wanted.ai_family = AF_INET;
  wanted.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(request.host.c_str(), nullptr, &wanted, &found) != 0 || found == nullptr) return false;
  address = *reinterpret_cast<const sockaddr_in*>(found->ai_addr);
  address.sin_port = htons(request.port);
  freeaddrinfo(found);
  return true;
}

TcpResult Exchange(const TcpRequest& request, std::string& answer) {
  const Descriptor connection(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!connection.IsOpen()) return TcpResult::kNoSocket;
  if (!LimitTime(connection.Number(), SO_SNDTIMEO, request.sendMs) ||
      !LimitTime(connection.Number(), SO_RCVTIMEO, request.receiveMs)) {
    return TcpResult::kNoTimeouts;
  }
  sockaddr_in address = {};
  if (request.host.empty() || !FindAddress(request, address)) return TcpResult::kUnknownHost;
  if (connect(connection.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return TcpResult::kNotConnected;
  }
  // A server that hangs up must not end the program.
  if (send(connection.Number(), request.bytes.data(), request.bytes.size(), MSG_NOSIGNAL) < 0) {
    return TcpResult::kTransferFailed;
  }
  answer.resize(request.answerSize);
  const ssize_t received = recv(connection.Number(), answer.data(), answer.size(), 0);
  answer.resize(received > 0 ? static_cast<std::size_t>(received) : 0);
  return received < 0 ? TcpResult::kTransferFailed : TcpResult::kDone;
}

}  // namespace

TcpResult ExchangeOverTcp(const TcpRequest& request, std::string& answer) {
  std::mutex mutex;
  std::condition_variable ended;
  bool over = false;
  TcpResult result = TcpResult::kTransferFailed;
  answer.clear();
  // Signals are for the thread that began: here they would only cut calls short. A thread inherits the mask.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread worker([&] {
    const TcpResult came = Exchange(request, answer);
    const std::lock_guard lock(mutex);
    result = came;
    over = true;
    ended.notify_one();
  });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  for (;;) {
    {
      std::unique_lock lock(mutex);
      if (ended.wait_for(lock, kLookPause, [&over] { return over; })) break;
    }
    if (request.waiting) request.waiting();
  }
  worker.join();
  return result;
}

}  // namespace platform
