// Compacting a file of any bytes: it is left alone, or it holds the same live records in their order and is
// in order then.
#include <cstring>
#include <vector>

#include "core/store/compaction.h"
#include "fuzz_file.h"
#include "platform/system/file.h"

namespace {

// What must stay of each slot: all bytes but the edit lock.
std::string LiveSlots(const std::string& bytes, std::size_t slotSize) {
  std::string live;
  for (std::size_t at = core::kFirstSlotOffset; at + slotSize <= bytes.size(); at += slotSize) {
    std::string slot = bytes.substr(at, slotSize);
    if (slot[offsetof(core::RecordHeader, inUse)] != 1) continue;
    slot[offsetof(core::RecordHeader, editLock)] = 0;
    live += slot;
  }
  return live;
}

std::string Content() {
  std::string content;
  FuzzCheck(platform::ReadWholeFile(FuzzPath(), 1 << 20, content));
  return content;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  WriteFuzzFile(data, size);
  const std::string before(reinterpret_cast<const char*>(data), size);
  const bool forced = size % 2 == 0;
  const core::RepairOutcome outcome = core::RepairCheck(FuzzPath(), forced);
  const std::string after = Content();
  core::FileHeader sizes;
  if (after != before) {
    FuzzCheck(outcome.clean);
    std::memcpy(&sizes, after.data(), sizeof sizes);
    FuzzCheck(LiveSlots(before, sizes.slotSize) == after.substr(core::kFirstSlotOffset));
    FuzzCheck(core::RepairCheck(FuzzPath(), false).clean && Content() == after);
  }
  if (!outcome.message.empty()) platform::RemoveFile(FuzzPath() + ".cut.1");
  return 0;
}
