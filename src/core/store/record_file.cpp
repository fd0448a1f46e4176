#include "core/store/record_file.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace core {

using platform::FileGuard;

namespace {

constexpr int kOpenTries = 5;

}  // namespace

// ---- Life ----

RecordFile::RecordFile(std::string filePath, std::string_view givenPassword, OpenMode openMode)
    : path(std::move(filePath)), password(givenPassword), mode(openMode) {
  static_cast<void>(Open());  // openError remembers it
}

RecordFile::~RecordFile() {
  Close();
}

bool RecordFile::Create(const HeaderBlock& header, const CategoryBlock& categories, std::uint32_t newSlotSize,
                        std::string_view slots) {
  Close();
  const std::string image = NewFileImage(header, categories, newSlotSize, slots);
  if (image.empty()) return false;
  return ReplaceWith(image) && Open();
}

bool RecordFile::ReplaceWith(const std::string& image) {
  // Held until the new file has the name: who opens the path meanwhile waits, and gets the new one.
  platform::File old;
  if (old.HoldPath(path) != platform::FileResult::kDone) return false;
  HeaderBlock header;
  std::uint32_t oldSlotSize = 0;
  if (!old.LocksReach() && old.IsOpen() && CheckRecordFile(old, header, oldSlotSize) == OpenError::kNone &&
      header.openCount != 0) {
    return false;
  }
  old.LetGoForRename();
  return platform::ReplaceFile(path, image.data(), image.size());
}

bool RecordFile::Fail(FileFault why) const {
  fault = why;
  return false;
}

bool RecordFile::Open() {
  if (file.IsOpen()) return true;
  // A file that is replaced before it is counted in is opened again.
  bool replaced = true;
  for (int tries = 0; replaced && tries < kOpenTries; ++tries) {
    file.Close();
    openError = TryOpen(replaced);
  }
  if (openError != OpenError::kNone) file.Close();
  return openError == OpenError::kNone;
}

OpenError RecordFile::TryOpen(bool& replaced) {
  replaced = false;
  const OpenError opened = FromFileResult(IsOnlyRead() ? file.OpenReadOnly(path) : file.OpenShared(path));
  if (opened != OpenError::kNone) return opened;
  HeaderBlock header;
  const bool firstTime = slotSize == 0;
  const OpenError checked = CheckRecordFile(file, header, slotSize);
  if (checked != OpenError::kNone) return checked;
  if (firstTime) counterAtOpen = header.changeCounter;
  if (IsOnlyRead()) return OpenError::kNone;

  const FileGuard guard(file);
  replaced = guard.Result() == platform::GuardResult::kReplaced;
  const bool counted = Entered(guard) && AddToCounter<std::uint32_t>(kOpenCountOffset, 1);
  return counted ? OpenError::kNone : FromFault(fault);
}

void RecordFile::Close() {
  if (!file.IsOpen()) return;
  if (!IsOnlyRead()) {
    LeaveCount();
    // What the commands wrote they have flushed. Without the count on the disk the file is only looked
    // through once more than needed.
    file.Flush();
  }
  leftLocks.clear();
  file.Close();
}

void RecordFile::LeaveCount() {
  const FileGuard guard(file);
  if (!Entered(guard)) return;
  ClearLeftLocks();
  if (!leftLocks.empty()) return;
  std::uint32_t count = 0;
  // Who reset the count to 0 has taken this object out of it already.
  if (!ReadBytes(&count, sizeof count, kOpenCountOffset) || count == 0) return;
  --count;
  WriteBytes(&count, sizeof count, kOpenCountOffset);
}

bool RecordFile::UsedByOthers() const {
  if (file.LocksReach()) return file.UsedByOthers();
  HeaderBlock header;
  return !ReadHeaderBlock(header) || header.openCount > (IsOnlyRead() ? 0 : 1);
}

// ---- The blocks before the slots ----

bool RecordFile::ReadBytes(void* buffer, std::size_t size, std::int64_t offset) const {
  if (file.ReadAt(buffer, size, offset) == static_cast<std::int64_t>(size)) return true;
  return Fail(file.IsOpen() ? FileFault::kReadFailed : FileFault::kClosed);
}

bool RecordFile::ReadFileHeader(FileHeader& header) const {
  return ReadBytes(&header, sizeof header, 0);
}

bool RecordFile::ReadHeaderBlock(HeaderBlock& header) const {
  return ReadBytes(&header, sizeof header, kHeaderBlockOffset);
}

bool RecordFile::ReadCategoryBlock(CategoryBlock& categories) const {
  return ReadBytes(&categories, sizeof categories, kCategoryBlockOffset);
}

// ---- Rights ----

Access RecordFile::AccessLevel() const {
  HeaderBlock header;
  return ReadHeaderBlock(header) ? LevelIn(header) : Access::kNone;
}

Access RecordFile::LevelIn(const HeaderBlock& header) const {
  const Access level = LevelOf(password, header);
  return mode == OpenMode::kAsReader && AllowsChanges(level) ? Access::kReader : level;
}

// ---- Records ----

std::int64_t RecordFile::SlotsEnd() const {
  const std::int64_t size = file.Size();
  if (size < kFirstSlotOffset || slotSize == 0) return -1;
  return size - (size - kFirstSlotOffset) % slotSize;
}

bool RecordFile::IsSlotOffset(std::int64_t offset) const {
  if (!file.IsOpen()) return Fail(FileFault::kClosed);
  const bool isSlot = offset >= kFirstSlotOffset && (offset - kFirstSlotOffset) % slotSize == 0 &&
                      offset + slotSize <= SlotsEnd();
  return isSlot || Fail(FileFault::kDeleted);
}

bool RecordFile::ReadSlot(void* slot, std::int32_t offset) const {
  return IsSlotOffset(offset) && ReadBytes(slot, slotSize, offset);
}

bool RecordFile::WriteSlot(const void* slot, std::int32_t offset) {
  return IsSlotOffset(offset) && WriteBytes(slot, slotSize, offset);
}

bool RecordFile::ReadRecord(void* slot, std::int32_t offset) const {
  if (!ReadSlot(slot, offset)) return false;
  return static_cast<const RecordHeader*>(slot)->inUse != 0 || Fail(FileFault::kDeleted);
}

bool RecordFile::ReadRecord(void* slot, const RecordKey& key) const {
  if (!ReadRecord(slot, key.offset)) return false;
  return static_cast<const RecordHeader*>(slot)->recordId == key.id || Fail(FileFault::kDeleted);
}

int RecordFile::ReadSlots(void* buffer, std::int64_t offset) const {
  if (slotSize == 0 || offset < kFirstSlotOffset) return -1;
  if (offset >= kOffsetsEnd) return 0;
  const auto addressable = static_cast<std::size_t>((kOffsetsEnd - 1 - offset) / slotSize + 1);
  const std::size_t wanted = std::min(kSlotsPerRead, addressable) * slotSize;
  const std::int64_t read = file.ReadAt(buffer, wanted, offset);
  return read < 0 ? -1 : static_cast<int>(read / slotSize);
}

bool RecordFile::InitRecord(void* slot) const {
  HeaderBlock header;
  if (!ReadHeaderBlock(header)) return false;
  RecordHeader record;
  std::memcpy(&record, slot, sizeof record);
  InitRecordHeader(record, slotSize, header);
  std::memcpy(slot, &record, sizeof record);
  return true;
}

// ---- Changes by others ----

bool RecordFile::ReadChangeCounter(std::uint64_t& counter) const {
  if (!file.LocksReach()) file.Refresh();  // what it answers, whoever watches the file asks for
  return ReadBytes(&counter, sizeof counter, kChangeCounterOffset);
}

bool RecordFile::LookAt(platform::FileState& state, HeaderBlock& header) const {
  if (!file.LocksReach()) file.Refresh();
  return file.ReadState(state) && ReadHeaderBlock(header);
}

std::uint64_t RecordFile::GetChangeCounter() const {
  std::uint64_t counter = 0;
  return ReadChangeCounter(counter) ? counter : 0;
}

}  // namespace core
