#include "platform/system/tcp_exchange.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <mutex>

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

// A process that was stopped, or slept with its machine, finds a call that has a time-out interrupted when it
// goes on; no signal need reach it.
template <typename Call>
ssize_t GoingOn(const Call& call) {
  ssize_t moved = 0;
  do {
    moved = call();
  } while (moved < 0 && errno == EINTR);
  return moved;
}

TcpResult Exchange(const TcpRequest& request, std::string& answer) {
  const Descriptor connection(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!connection.IsOpen()) return TcpResult::kNoSocket;
  if (!LimitTime(connection.Number(), SO_RCVTIMEO, request.receiveMs)) return TcpResult::kNoTimeouts;
  sockaddr_in address = {};
  if (request.host.empty() || !FindAddress(request, address)) return TcpResult::kUnknownHost;
  if (connect(connection.Number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    return TcpResult::kNotConnected;
  }
  // Not before, because the limit on sending would hold for connecting too.
  if (!LimitTime(connection.Number(), SO_SNDTIMEO, request.sendMs)) return TcpResult::kNoTimeouts;
  // A server that hangs up must not end the program.
  const ssize_t sent = GoingOn(
      [&] { return send(connection.Number(), request.bytes.data(), request.bytes.size(), MSG_NOSIGNAL); });
  if (sent < 0) return TcpResult::kTransferFailed;
  answer.resize(request.answerSize);
  const ssize_t received =
      GoingOn([&] { return recv(connection.Number(), answer.data(), answer.size(), 0); });
  answer.resize(received > 0 ? static_cast<std::size_t>(received) : 0);
  return received < 0 ? TcpResult::kTransferFailed : TcpResult::kDone;
}

// What the two threads share.
struct Work {
  const TcpRequest& request;
  std::string& answer;
  TcpResult result = TcpResult::kNoSocket;
  bool over = false;
  std::mutex mutex;
  std::condition_variable ended;
};

void* DoWork(void* given) {
  Work& work = *static_cast<Work*>(given);
  const TcpResult result = Exchange(work.request, work.answer);
  const std::lock_guard lock(work.mutex);
  work.result = result;
  work.over = true;
  work.ended.notify_one();
  return nullptr;
}

bool IsOver(Work& work) {
  std::unique_lock lock(work.mutex);
  return work.ended.wait_for(lock, kLookPause, [&work] { return work.over; });
}

}  // namespace

TcpResult ExchangeOverTcp(const TcpRequest& request, std::string& answer) {
  answer.clear();
  Work work{.request = request, .answer = answer, .mutex = {}, .ended = {}};
  // Signals are for the thread that began: here they would only cut calls short. A thread inherits the mask.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  pthread_t worker = {};
  // Not std::thread, which cannot say that the system has no more threads.
  const bool begun = pthread_create(&worker, nullptr, DoWork, &work) == 0;
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (!begun) return TcpResult::kNoSocket;
  while (!IsOver(work)) {
    if (request.waiting) request.waiting();
  }
  pthread_join(worker, nullptr);
  return work.result;
}

}  // namespace platform
