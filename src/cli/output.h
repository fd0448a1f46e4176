// Where a command writes: gathered in large pieces, with the first failure remembered.
#pragma once

#include <cerrno>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace cli {

// Takes bytes away for good; false, with `errno` telling why, when they could not all be written.
using Sink = std::function<bool(std::string_view bytes)>;

class Output {
 public:
  explicit Output(Sink destination) : sink(std::move(destination)) {}
  ~Output() { Flush(); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void Write(std::string_view bytes) {
    if (failed) return;
    waiting += bytes;
    if (waiting.size() >= kPiece) Flush();
  }

  // Sends what waits. False when that, or anything before, failed.
  bool Flush() {
    if (!failed && !waiting.empty()) {
      errno = 0;
      failed = !sink(waiting);
      readerLeft = failed && errno == EPIPE;
    }
    waiting.clear();
    return !failed;
  }

  // True when the rest will not be written either: a long command may end.
  bool Failed() const { return failed; }

  // True when it failed because whoever reads has had enough ("| head"): nobody is to be bothered with that.
  bool ReaderLeft() const { return readerLeft; }

 private:
  static constexpr std::size_t kPiece = 65536;
  Sink sink;
  std::string waiting;
  bool failed = false;
  bool readerLeft = false;
};

}  // namespace cli
