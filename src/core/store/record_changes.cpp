// The operations of RecordFile that write.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <memory>
#include <new>
#include <thread>

#include "core/store/record_file.h"

namespace core {
namespace {

using platform::FileGuard;

// What must not be left undone is tried again, after a moment in which a file server may come back.
constexpr int kTries = 3;
constexpr auto kPause = std::chrono::milliseconds(20);
// Each try for the guard waits for it.
constexpr int kGuardTries = 2;

bool refreshEnabled = true;

constexpr std::int64_t SlotField(std::int64_t offset, std::size_t fieldOffset) {
  return offset + static_cast<std::int64_t>(fieldOffset);
}

template <typename Try>
bool TryAgain(const Try& attempt) {
  for (int i = 1; !attempt(); ++i) {
    if (i == kTries) return false;
    std::this_thread::sleep_for(kPause);
  }
  return true;
}

FileFault FaultOf(platform::GuardResult result) {
  switch (result) {
    case platform::GuardResult::kHeld:
      return FileFault::kNone;
    case platform::GuardResult::kBusy:
      return FileFault::kBusy;
    case platform::GuardResult::kReplaced:
      return FileFault::kReplaced;
    case platform::GuardResult::kGone:
      return FileFault::kGone;
    case platform::GuardResult::kFailed:
      break;
  }
  return FileFault::kWriteFailed;
}

}  // namespace

bool RefreshEnabled() {
  return refreshEnabled;
}

void SetRefreshEnabled(bool enabled) {
  refreshEnabled = enabled;
}

// ---- Writing under the guard ----

// Where locks do not reach, the guard opened the file anew, and some file systems cannot tell one file of a
// name from the next. It must be one of the same kind at least; records are told by their ids.
bool RecordFile::IsStillMine() const {
  HeaderBlock header;
  std::uint32_t size = 0;
  const OpenError error = CheckRecordFile(file, header, size);
  if (error == OpenError::kReadFailed) return Fail(FileFault::kReadFailed);
  return (error == OpenError::kNone && size == slotSize) || Fail(FileFault::kReplaced);
}

bool RecordFile::Entered(const FileGuard& guard) const {
  if (mode == OpenMode::kAsReader && file.IsOpen()) return Fail(FileFault::kReader);
  if (guard.Held()) return file.LocksReach() || IsStillMine();
  return Fail(file.IsOpen() ? FaultOf(guard.Result()) : FileFault::kClosed);
}

bool RecordFile::WriteBytes(const void* bytes, std::size_t size, std::int64_t offset) {
  if (file.WriteAt(bytes, size, offset) == static_cast<std::int64_t>(size)) return true;
  if (!file.IsOpen()) return Fail(FileFault::kClosed);
  const bool full = file.LastWrite() == platform::FileResult::kDiskFull;
  return Fail(full ? FileFault::kDiskFull : FileFault::kWriteFailed);
}

template <typename T>
bool RecordFile::AddToCounter(std::int64_t offset, T change) {
  using Unsigned = std::make_unsigned_t<T>;  // a damaged counter at its limit wraps
  Unsigned value = 0;
  if (!ReadBytes(&value, sizeof value, offset)) return false;
  value += static_cast<Unsigned>(change);
  return WriteBytes(&value, sizeof value, offset);
}

template bool RecordFile::AddToCounter(std::int64_t offset, std::uint32_t change);
template bool RecordFile::AddToCounter(std::int64_t offset, std::int32_t change);

// Makes others look at what was written.
Result RecordFile::CountChange() {
  const bool counted = TryAgain([this] { return AddToCounter<std::uint64_t>(kChangeCounterOffset, 1); });
  return counted ? Result::kDone : Result::kNotCounted;
}

bool RecordFile::BumpChangeCounter() {
  const FileGuard guard(file);
  return Entered(guard) && CountChange() == Result::kDone;
}

// Whether the password allows changes, as the file says now: it may have been changed meanwhile.
Result RecordFile::Allowed() const {
  HeaderBlock header;
  if (!ReadHeaderBlock(header)) return Result::kFailed;
  const Access level = LevelIn(header);
  if (AllowsChanges(level)) return Result::kDone;
  Fail(level == Access::kReader ? FileFault::kReader : FileFault::kNoAccess);
  return Result::kRefused;
}

// ---- The blocks before the slots ----

bool RecordFile::WriteHeaderBlock(const HeaderBlock& header) {
  const FileGuard guard(file);
  return Entered(guard) && WriteBytes(&header, sizeof header, kHeaderBlockOffset);
}

bool RecordFile::UpdateHeaderBlock(const std::function<void(HeaderBlock&)>& change) {
  const FileGuard guard(file);
  HeaderBlock before;
  if (!Entered(guard) || !ReadHeaderBlock(before)) return false;
  HeaderBlock after = before;
  change(after);
  const auto* oldBytes = reinterpret_cast<const char*>(&before);
  const auto* newBytes = reinterpret_cast<const char*>(&after);
  const char* first = std::mismatch(newBytes, newBytes + sizeof after, oldBytes).first;
  if (first == newBytes + sizeof after) return true;
  const char* end = newBytes + sizeof after;
  while (end[-1] == oldBytes[end - newBytes - 1]) --end;
  return WriteBytes(first, static_cast<std::size_t>(end - first), kHeaderBlockOffset + (first - newBytes));
}

Result RecordFile::WriteCategoryBlock(const CategoryBlock& categories) {
  const FileGuard guard(file);
  if (!Entered(guard)) return Result::kFailed;
  const Result allowed = Allowed();
  if (allowed != Result::kDone) return allowed;
  return WriteBytes(&categories, sizeof categories, kCategoryBlockOffset) ? Result::kDone : Result::kFailed;
}

// ---- Adding ----

Result RecordFile::AddRecord(const void* slot, std::int32_t* place) {
  const FileGuard guard(file);
  if (!Entered(guard)) return Result::kFailed;
  const Result allowed = Allowed();
  // Whoever may read an address book may put somebody into it.
  const bool mayAdd =
      allowed == Result::kRefused && fault == FileFault::kReader && slotSize == kAddressKind.slotSize;
  if (allowed != Result::kDone && !mayAdd) return allowed;
  bool reused = false;
  const std::int64_t offset = FindPlace(reused);
  if (offset <= 0) return Result::kFailed;
  const std::int64_t size = file.Size();
  if (place != nullptr) *place = static_cast<std::int32_t>(offset);
  const Result result = PutSlot(slot, offset) ? CountChange() : Result::kFailed;
  if (result == Result::kFailed) {
    const FileFault why = fault;
    TakeBackAddition(reused, size);
    Fail(why);
  }
  return result;
}

// Best as it was. A hint that stays lost costs one free slot until the next compaction, and so do bytes of
// the new record that cannot be cut off the end again.
void RecordFile::TakeBackAddition(bool reused, std::int64_t sizeBefore) {
  if (reused) {
    AddToCounter<std::int32_t>(kFreeSlotBalanceOffset, -1);
  } else if (sizeBefore >= kFirstSlotOffset && file.Size() > sizeBefore) {
    file.CutTo(sizeBefore);
  }
}

// Writes a slot that nobody sees before its body is whole: as a free one first, then its in-use byte, then
// its caller moves the counter that makes others look. A writer that dies in between leaves a free slot.
bool RecordFile::PutSlot(const void* slot, std::int64_t offset) {
  constexpr std::size_t kInUse = offsetof(RecordHeader, inUse);
  char body[kLargestSlotSize];
  std::memcpy(body, slot, slotSize);
  const char inUse = body[kInUse];
  body[kInUse] = 0;
  return WriteBytes(body, slotSize, offset) && WriteBytes(&inUse, 1, SlotField(offset, kInUse));
}

// The offset for a new record, 0 or less when there is none. A slot that is taken again leaves the balance
// before it is written: dying in between loses a hint, while the other order would make the file refuse new
// records.
std::int64_t RecordFile::FindPlace(bool& reused) {
  std::int32_t balance = 0;
  if (!ReadBytes(&balance, sizeof balance, kFreeSlotBalanceOffset)) return 0;
  if (balance >= 0) {
    const std::int64_t end = SlotsEnd();
    if (end > 0 && end < kOffsetsEnd) return end;
    Fail(end > 0 ? FileFault::kNoPlace : FileFault::kReadFailed);
    return 0;
  }
  const std::vector<std::int64_t> free = FindFreeSlots(1);
  reused = !free.empty() && AddToCounter<std::int32_t>(kFreeSlotBalanceOffset, 1);
  return reused ? free.front() : 0;
}

// The first of them, as many as are wanted and there are; the fault tells why there are fewer.
std::vector<std::int64_t> RecordFile::FindFreeSlots(std::size_t wanted) const {
  std::vector<std::int64_t> found;
  Fail(FileFault::kNoPlace);
  const std::size_t bytes = kSlotsPerRead * slotSize;
  const std::unique_ptr<char[]> slots(new (std::nothrow) char[bytes]());
  if (slots == nullptr) return found;
  const std::int64_t end = SlotsEnd();
  for (std::int64_t offset = kFirstSlotOffset; offset < end; offset += static_cast<std::int64_t>(bytes)) {
    const int count = ReadSlots(slots.get(), offset);
    for (int i = 0; i < count; ++i) {
      const std::size_t at = static_cast<std::size_t>(i) * slotSize;
      if (slots[at + offsetof(RecordHeader, inUse)] != 0) continue;
      found.push_back(offset + static_cast<std::int64_t>(at));
      if (found.size() == wanted) return found;
    }
    if (count < 0) Fail(FileFault::kReadFailed);
    if (count >= 0 && count < static_cast<int>(kSlotsPerRead)) break;
  }
  return found;
}

// ---- Changing what is there ----

// Reads the header of the record that an operation means, whether it is live or not.
bool RecordFile::ReadWanted(RecordHeader& record, std::int64_t offset, WantedId id) const {
  if (!IsSlotOffset(offset) || !ReadBytes(&record, sizeof record, offset)) return false;
  return !id || *id == record.recordId || Fail(FileFault::kDeleted);
}

Result RecordFile::WriteRecord(const void* slot, std::int32_t offset) {
  return Write(slot, offset, {});
}

Result RecordFile::WriteRecord(const void* slot, const RecordKey& key) {
  return Write(slot, key.offset, key.id);
}

Result RecordFile::Write(const void* slot, std::int32_t offset, WantedId id) {
  const FileGuard guard(file);
  if (!Entered(guard)) return Result::kFailed;
  const Result allowed = Allowed();
  if (allowed != Result::kDone) return allowed;
  RecordHeader record;
  if (id && (!ReadWanted(record, offset, id) || (record.inUse == 0 && !Fail(FileFault::kDeleted)))) {
    return Result::kFailed;
  }
  return WriteSlot(slot, offset) ? CountChange() : Result::kFailed;
}

Result RecordFile::DeleteRecord(std::int32_t offset) {
  return Delete(offset, {});
}

Result RecordFile::DeleteRecord(const RecordKey& key) {
  return Delete(key.offset, key.id);
}

Result RecordFile::Delete(std::int32_t offset, WantedId id) {
  const FileGuard guard(file);
  if (!Entered(guard)) return Result::kFailed;
  const Result allowed = Allowed();
  if (allowed != Result::kDone) return allowed;
  RecordHeader record;
  const char free = 0;
  if (!ReadWanted(record, offset, id) || (id && record.inUse == 0 && !Fail(FileFault::kDeleted)) ||
      !WriteBytes(&free, 1, SlotField(offset, offsetof(RecordHeader, inUse)))) {
    return Result::kFailed;
  }
  const Result counted = CountChange();
  // A hint that is lost costs one free slot until the next compaction.
  AddToCounter<std::int32_t>(kFreeSlotBalanceOffset, -1);
  return counted;
}

// ---- Edit locks ----

bool RecordFile::LockRecord(std::int32_t offset) {
  return Lock(offset, {});
}

bool RecordFile::LockRecord(const RecordKey& key) {
  return Lock(key.offset, key.id);
}

bool RecordFile::Lock(std::int32_t offset, WantedId id) {
  const FileGuard guard(file);
  if (!Entered(guard)) return false;
  ClearLeftLocks();
  HeaderBlock header;
  RecordHeader record;
  if (!ReadHeaderBlock(header) || !ReadWanted(record, offset, id)) return false;
  if (LevelIn(header) == Access::kNone) return Fail(FileFault::kNoAccess);
  if (record.inUse == 0) return Fail(FileFault::kDeleted);
  if (record.editLock == 1) return Fail(FileFault::kLocked);
  const char locked = 1;
  if (!WriteBytes(&locked, 1, SlotField(offset, offsetof(RecordHeader, editLock)))) return false;
  SetRefreshEnabled(false);
  return true;
}

bool RecordFile::UnlockRecord(std::int32_t offset) {
  return Unlock(offset, {});
}

bool RecordFile::UnlockRecord(const RecordKey& key) {
  return Unlock(key.offset, key.id);
}

bool RecordFile::Unlock(std::int32_t offset, WantedId id) {
  SetRefreshEnabled(true);
  for (int i = 0; i < kGuardTries; ++i) {
    const FileGuard guard(file);
    const bool entered = Entered(guard);
    if (entered && ClearLock(offset, id)) return true;
    if (entered || fault != FileFault::kBusy) break;
  }
  if (!NothingToUnlock() && file.IsOpen()) leftLocks.push_back({offset, id});
  return false;
}

// What the last ClearLock that failed found.
bool RecordFile::NothingToUnlock() const {
  return fault == FileFault::kNotLocked || fault == FileFault::kDeleted;
}

// Under the guard.
bool RecordFile::ClearLock(std::int32_t offset, WantedId id) {
  bool cleared = false;
  const auto attempt = [&] {
    RecordHeader record;
    const char unlocked = 0;
    cleared = ReadWanted(record, offset, id) && (record.editLock != 0 || Fail(FileFault::kNotLocked)) &&
              WriteBytes(&unlocked, 1, SlotField(offset, offsetof(RecordHeader, editLock)));
    return cleared || NothingToUnlock();
  };
  return TryAgain(attempt) && cleared;
}

void RecordFile::ClearLeftLocks() {
  std::erase_if(leftLocks, [this](const LeftLock& lock) {
    return ClearLock(lock.offset, lock.id) || NothingToUnlock();
  });
}

}  // namespace core
