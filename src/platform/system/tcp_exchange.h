// One request and one answer over TCP (IPv4), each exchange on a connection of its own: connect, send,
// receive, close. Nothing of it is left open on any path.
//
// The calls of the system block, so they are made by a thread that does nothing else; the caller stays in
// ExchangeOverTcp until it has ended, and may repaint its window meanwhile.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace platform {

enum class TcpResult {
  kDone,            // the request went out and the server answered, with however few bytes, or hung up
  kNoSocket,        // the system gives none, or no thread
  kNoTimeouts,      // it takes none
  kUnknownHost,     // the name has no IPv4 address
  kNotConnected,    // nobody answers there
  kTransferFailed,  // sending or receiving failed or took too long
};

struct TcpRequest {
  std::string host;  // a name or a dotted address; what is behind a zero byte does not count
  std::uint16_t port = 0;
  std::string_view bytes;         // borrowed for the call
  std::size_t answerSize = 0;     // the bytes that are read at most
  int sendMs = 60000;             // how long sending may take
  int receiveMs = 60000;          // how long the server may take to answer
  std::function<void()> waiting;  // called by the caller's thread about every 20 ms; may be empty
};

// The first bytes that the server sends, as they come in one piece, become `answer`. Looking up the name and
// connecting take as long as the system allows.
[[nodiscard]] TcpResult ExchangeOverTcp(const TcpRequest& request, std::string& answer);

}  // namespace platform
