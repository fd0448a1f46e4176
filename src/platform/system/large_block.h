// A piece of memory for a process that fills much of it once: as large as the machine's larger pages are, so
// that the system makes one of them of it, where it does that, and not five hundred at the first touch of
// each.
#pragma once

#include <cstddef>
#include <memory>

namespace platform {

inline constexpr std::size_t kLargeBlock = std::size_t{2} << 20;  // bytes

struct LargeBlockRelease {
  void operator()(char* block) const;
};
using LargeBlock = std::unique_ptr<char[], LargeBlockRelease>;

// kLargeBlock bytes of any content; null when there is no memory.
LargeBlock TakeLargeBlock();

}  // namespace platform
