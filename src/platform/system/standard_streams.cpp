#include "platform/system/standard_streams.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

namespace platform {
namespace {

bool WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(descriptor, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

}  // namespace

void PrepareStandardStreams() {
  // Opened the other way round than the stream is used, so that output to a closed stream still fails.
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0 || errno != EBADF) continue;
    // The lowest free number is taken, which is this one.
    [[maybe_unused]] const int taken = open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
  signal(SIGPIPE, SIG_IGN);
}

bool WriteStandardOutput(std::string_view bytes) {
  return WriteAll(STDOUT_FILENO, bytes);
}

bool WriteStandardError(std::string_view bytes) {
  return WriteAll(STDERR_FILENO, bytes);
}

bool ReadStandardInput(std::size_t limit, std::string& bytes) {
  std::array<char, 65536> piece;
  bytes.clear();
  for (;;) {
    const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    bytes.append(piece.data(), static_cast<std::size_t>(count));
    if (bytes.size() > limit) return false;
  }
}

int TerminalWidth() {
  struct winsize size = {};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

}  // namespace platform
