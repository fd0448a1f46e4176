#include "support/faulty_calls.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace tests {
namespace {

FaultyCalls* current = nullptr;

}  // namespace

// The stand-ins. Plain functions, as the table wants them, that find their way through `current`.
struct FaultyEntries {
  static std::int64_t Read(int descriptor, void* buffer, std::size_t size, std::int64_t offset) {
    return current->Enter(FaultyCalls::kRead, &size)
               ? current->original.read(descriptor, buffer, size, offset)
               : -1;
  }
  static std::int64_t Write(int descriptor, const void* buffer, std::size_t size, std::int64_t offset) {
    return current->Enter(FaultyCalls::kWrite, &size)
               ? current->original.write(descriptor, buffer, size, offset)
               : -1;
  }
  static int Flush(int descriptor) {
    return current->Enter(FaultyCalls::kFlush, nullptr) ? current->original.flush(descriptor) : -1;
  }
  static int Lock(int descriptor, short type, std::int64_t offset) {
    return current->Enter(FaultyCalls::kLock, nullptr) ? current->original.lock(descriptor, type, offset)
                                                       : -1;
  }
  static int Rename(const char* from, const char* to) {
    return current->Enter(FaultyCalls::kRename, nullptr) ? current->original.rename(from, to) : -1;
  }
  static int RenameNew(const char* from, const char* to) {
    return current->Enter(FaultyCalls::kRenameNew, nullptr) ? current->original.renameNew(from, to) : -1;
  }
  static int Link(const char* from, const char* to) {
    return current->Enter(FaultyCalls::kLink, nullptr) ? current->original.link(from, to) : -1;
  }
  static std::int64_t Size(int descriptor) {
    return current->Enter(FaultyCalls::kSize, nullptr) ? current->original.size(descriptor) : -1;
  }
};

FaultyCalls::FaultyCalls() : original(platform::SystemFileCalls()) {
  if (current != nullptr) {
    std::fputs("two FaultyCalls at a time\n", stderr);
    std::abort();
  }
  current = this;
  platform::SystemFileCalls() = {FaultyEntries::Read, FaultyEntries::Write,  FaultyEntries::Flush,
                                 FaultyEntries::Lock, FaultyEntries::Rename, FaultyEntries::RenameNew,
                                 FaultyEntries::Link, FaultyEntries::Size};
}

FaultyCalls::~FaultyCalls() {
  platform::SystemFileCalls() = original;
  current = nullptr;
}

void FaultyCalls::Fail(Call call, int nth, int error, int times) {
  faults.push_back({call, nth, times, error, 0, nullptr});
}

void FaultyCalls::Shorten(Call call, int nth, std::size_t bytes, int times) {
  faults.push_back({call, nth, times, 0, bytes, nullptr});
}

void FaultyCalls::Before(Call call, int nth, std::function<void()> action) {
  faults.push_back({call, nth, 1, 0, 0, std::move(action)});
}

bool FaultyCalls::Enter(Call call, std::size_t* size) {
  ++counts[call];
  ++counts[kAny];
  int error = 0;
  for (std::size_t i = 0; i < faults.size(); ++i) {
    const Fault fault = faults[i];  // a copy: the action may add faults
    if (fault.call != call && fault.call != kAny) continue;
    const int number = counts[fault.call];
    const bool meant = number >= fault.nth && (fault.times == kForEver || number < fault.nth + fault.times);
    if (!meant) continue;
    if (fault.action) fault.action();
    if (fault.error != 0) error = fault.error;
    if (size != nullptr) *size -= fault.shortage < *size ? fault.shortage : *size;
  }
  errno = error;
  return error == 0;
}

}  // namespace tests
