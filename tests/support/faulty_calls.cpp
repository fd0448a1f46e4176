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
  // `size` is how many bytes are to be moved.
  template <FaultyCalls::Call kCall, auto kEntry, typename Buffer>
  static std::int64_t Transfer(int descriptor, Buffer buffer, std::size_t size, std::int64_t offset) {
    return current->Enter(kCall, &size) ? (current->original.*kEntry)(descriptor, buffer, size, offset) : -1;
  }
  template <FaultyCalls::Call kCall, auto kEntry, typename Result, typename... Arguments>
  static Result Other(Arguments... arguments) {
    return current->Enter(kCall, nullptr) ? (current->original.*kEntry)(arguments...) : -1;
  }
};

FaultyCalls::FaultyCalls() : original(platform::SystemFileCalls()) {
  if (current != nullptr) {
    std::fputs("two FaultyCalls at a time\n", stderr);
    std::abort();
  }
  current = this;
  using Calls = platform::FileCalls;
  platform::SystemFileCalls() = {FaultyEntries::Transfer<kRead, &Calls::read>,
                                 FaultyEntries::Transfer<kWrite, &Calls::write>,
                                 FaultyEntries::Other<kFlush, &Calls::flush>,
                                 FaultyEntries::Other<kLock, &Calls::lock>,
                                 FaultyEntries::Other<kRename, &Calls::rename>,
                                 FaultyEntries::Other<kRenameNew, &Calls::renameNew>,
                                 FaultyEntries::Other<kLink, &Calls::link>,
                                 FaultyEntries::Other<kSize, &Calls::size>,
                                 FaultyEntries::Other<kCut, &Calls::cut>,
                                 FaultyEntries::Other<kCreateNew, &Calls::createNew>,
                                 FaultyEntries::Other<kRemove, &Calls::remove>,
                                 original.locksReach,
                                 original.state,
                                 original.nowMs};
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
