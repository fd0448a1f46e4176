// The bytes of a fuzz run as a file. It lies in memory where the machine has such a folder, since a run is
// mostly system calls.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/system/file.h"

// A folder of this process and its one file; both stay after the end.
inline const std::string& FuzzPath() {
  static const std::string path = [] {
    std::string folder =
        access("/dev/shm", W_OK) == 0 ? "/dev/shm/daybrix-fuzz-XXXXXX" : "/tmp/daybrix-fuzz-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr) std::abort();
    return folder + "/calendar.cld";
  }();
  return path;
}

inline void WriteFuzzFile(const std::uint8_t* data, std::size_t size) {
  const int descriptor = open(FuzzPath().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (descriptor < 0 || write(descriptor, data, size) != static_cast<ssize_t>(size)) std::abort();
  close(descriptor);
}

// The bytes of a fuzz run in memory, where the file calls find them in place of those of the one file that
// there is. Only its path is on the disk.
class MemoryFile {
 public:
  MemoryFile(const std::uint8_t* data, std::size_t size) {
    static const bool made = (WriteFuzzFile(nullptr, 0), true);
    if (!made) std::abort();
    Bytes().assign(reinterpret_cast<const char*>(data), size);
    platform::FileCalls& calls = platform::SystemFileCalls();
    calls.read = Read;
    calls.write = Write;
    calls.flush = [](int) { return 0; };
    calls.lock = [](int, short, std::int64_t) { return 0; };
    calls.size = [](int) { return static_cast<std::int64_t>(Bytes().size()); };
  }

 private:
  static std::string& Bytes() {
    static std::string bytes;
    return bytes;
  }
  static std::int64_t Read(int /*descriptor*/, void* buffer, std::size_t size, std::int64_t offset) {
    const auto at = static_cast<std::size_t>(offset);
    return at >= Bytes().size()
               ? 0
               : static_cast<std::int64_t>(Bytes().copy(static_cast<char*>(buffer), size, at));
  }
  static std::int64_t Write(int /*descriptor*/, const void* buffer, std::size_t size, std::int64_t offset) {
    const auto at = static_cast<std::size_t>(offset);
    if (Bytes().size() < at + size) Bytes().resize(at + size);
    Bytes().replace(at, size, static_cast<const char*>(buffer), size);
    return static_cast<std::int64_t>(size);
  }
};

inline void FuzzCheck(bool holds) {
  if (!holds) std::abort();
}
