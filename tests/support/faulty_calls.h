// Stands in for the system's file calls for a scope and makes chosen ones fail, fall short or happen at a
// chosen moment. One at a time; calls of each kind are counted from 1.
//
//   FaultyCalls faults;
//   faults.Fail(FaultyCalls::kWrite, 2, ENOSPC);       // the second write finds the disk full
//   faults.Shorten(FaultyCalls::kRead, 1, 10);         // the first read moves ten bytes fewer than asked
//   faults.Before(FaultyCalls::kLock, 1, [] { ... });  // something happens just before the first lock
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

#include "platform/system/file.h"

namespace tests {

class FaultyCalls {
 public:
  enum Call {
    kRead,
    kWrite,
    kFlush,
    kLock,
    kRename,
    kRenameNew,
    kLink,
    kSize,
    kCut,
    kCreateNew,
    kRemove,
    kAny
  };  // kAny counts them all
  static constexpr int kForEver = -1;

  FaultyCalls();
  ~FaultyCalls();
  FaultyCalls(const FaultyCalls&) = delete;
  FaultyCalls& operator=(const FaultyCalls&) = delete;

  // Calls number `nth` to `nth + times - 1` do nothing but fail with this errno.
  void Fail(Call call, int nth, int error, int times = 1);

  // That read or write moves `bytes` fewer than asked for, none at the least.
  void Shorten(Call call, int nth, std::size_t bytes, int times = 1);

  // Runs `action` just before that call, which then goes its way.
  void Before(Call call, int nth, std::function<void()> action);

  // Calls of this kind so far, failed ones included.
  int Count(Call call) const { return counts[call]; }

 private:
  struct Fault {
    Call call;
    int nth;
    int times;
    int error;             // 0 for none
    std::size_t shortage;  // bytes
    std::function<void()> action;
  };
  friend struct FaultyEntries;

  // Counts a call, runs its actions and answers false (with errno set) when it is to fail. `size`, where
  // there is one, is made as short as the call is to be.
  bool Enter(Call call, std::size_t* size);

  platform::FileCalls original;
  std::array<int, kAny + 1> counts = {};
  std::vector<Fault> faults;
};

}  // namespace tests
