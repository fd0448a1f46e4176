#include "core/record_scan.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace core {
namespace {

// Where the offsets end that records can have.
constexpr std::int64_t kOffsetsEnd = std::int64_t{std::numeric_limits<std::int32_t>::max()} + 1;

}  // namespace

bool ScanRecords(const RecordFile& file,
                 const std::function<void(const char* slot, std::int32_t offset)>& visit) {
  if (!file.IsOpen()) return false;
  const std::size_t slotSize = file.SlotSize();
  const std::size_t bytes = kSlotsPerRead * slotSize;
  const std::unique_ptr<char[]> slots(new (std::nothrow) char[bytes + kLargestSlotSize]);
  if (slots == nullptr) return false;
  Access level = Access::kNone;
  bool levelKnown = false;
  const auto seesConfidential = [&] {
    if (!levelKnown) level = file.AccessLevel();
    levelKnown = true;
    return level == Access::kOwner;
  };
  for (std::int64_t offset = file.FirstSlotOffset();; offset += static_cast<std::int64_t>(bytes)) {
    const int count = file.ReadSlots(slots.get(), offset);
    if (count >= 0)
      std::memset(slots.get() + static_cast<std::size_t>(count) * slotSize, 0, kLargestSlotSize);
    for (int i = 0; i < count; ++i) {
      const char* slot = slots.get() + static_cast<std::size_t>(i) * slotSize;
      if (slot[offsetof(RecordHeader, inUse)] != 1) continue;
      if (slot[offsetof(RecordHeader, confidential)] == 1 && !seesConfidential()) continue;
      visit(slot, static_cast<std::int32_t>(offset + (slot - slots.get())));
    }
    // A read that falls short before the end came to a place that cannot be read: the slots behind it count.
    const std::int64_t next = offset + static_cast<std::int64_t>(bytes);
    if (count < static_cast<int>(kSlotsPerRead) && next >= std::min(file.SlotsEnd(), kOffsetsEnd))
      return true;
  }
}

}  // namespace core
