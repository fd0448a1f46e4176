#include "platform/system/large_block.h"

#include <sys/mman.h>

#include <cstdlib>

namespace platform {

void LargeBlockRelease::operator()(char* block) const {
  std::free(block);
}

LargeBlock TakeLargeBlock() {
  void* const block = std::aligned_alloc(kLargeBlock, kLargeBlock);
  if (block != nullptr) static_cast<void>(madvise(block, kLargeBlock, MADV_HUGEPAGE));
  return LargeBlock(static_cast<char*>(block));
}

}  // namespace platform
