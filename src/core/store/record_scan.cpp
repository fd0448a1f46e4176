#include "core/store/record_scan.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

namespace core {

ScanResult ScanRecords(const RecordFile& file, const RecordVisit& visit) {
  if (!file.IsOpen()) return ScanResult::kFailed;
  // Who cannot be told to be the owner does not see what is the owner's.
  HeaderBlock header;
  const bool levelKnown = file.ReadHeaderBlock(header);
  const Access level = levelKnown ? file.LevelIn(header) : Access::kReader;
  if (level == Access::kNone) return ScanResult::kFailed;
  const ScanResult scanned = ScanLiveSlots(file, [&](const char* slot, std::int32_t offset) {
    if (slot[offsetof(RecordHeader, confidential)] != 1 || level == Access::kOwner) visit(slot, offset);
  });
  return scanned == ScanResult::kAll && !levelKnown ? ScanResult::kParts : scanned;
}

ScanResult ScanLiveSlots(const RecordFile& file, const RecordVisit& visit) {
  if (!file.IsOpen()) return ScanResult::kFailed;
  const std::size_t slotSize = file.SlotSize();
  const std::size_t bytes = kSlotsPerRead * slotSize;
  const std::unique_ptr<char[]> slots(new (std::nothrow) char[bytes + kLargestSlotSize]);
  if (slots == nullptr) return ScanResult::kFailed;
  ScanResult result = ScanResult::kAll;
  for (std::int64_t offset = file.FirstSlotOffset();; offset += static_cast<std::int64_t>(bytes)) {
    // Asked before the read: what another copy adds after it is not missing.
    const std::int64_t end = file.SlotsEnd();
    const int count = file.ReadSlots(slots.get(), offset);
    if (count >= 0)
      std::memset(slots.get() + static_cast<std::size_t>(count) * slotSize, 0, kLargestSlotSize);
    for (int i = 0; i < count; ++i) {
      const char* slot = slots.get() + static_cast<std::size_t>(i) * slotSize;
      if (slot[offsetof(RecordHeader, inUse)] != 1) continue;
      visit(slot, static_cast<std::int32_t>(offset + (slot - slots.get())));
    }
    if (count == static_cast<int>(kSlotsPerRead)) continue;
    const std::int64_t there = std::min(end, kOffsetsEnd) - offset;
    if (end < 0 || there / static_cast<std::int64_t>(slotSize) > count) result = ScanResult::kParts;
    // A read that falls short before the end came to a place that cannot be read: the slots behind it count.
    if (there <= static_cast<std::int64_t>(bytes)) return result;
  }
}

}  // namespace core
