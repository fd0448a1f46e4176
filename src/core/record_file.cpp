#include "core/record_file.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "core/record_query.h"

namespace core {
namespace {

using platform::FileGuard;

constexpr std::int64_t kLargestOffset = std::numeric_limits<std::int32_t>::max();

bool refreshEnabled = true;

constexpr std::int64_t HeaderField(std::size_t fieldOffset) {
  return kHeaderBlockOffset + static_cast<std::int64_t>(fieldOffset);
}

constexpr std::int64_t SlotField(std::int64_t offset, std::size_t fieldOffset) {
  return offset + static_cast<std::int64_t>(fieldOffset);
}

OpenError FromFileResult(platform::FileResult result) {
  switch (result) {
    case platform::FileResult::kDone:
      return OpenError::kNone;
    case platform::FileResult::kMissing:
      return OpenError::kMissing;
    case platform::FileResult::kDenied:
      return OpenError::kDenied;
    case platform::FileResult::kIsFolder:
      return OpenError::kIsFolder;
    case platform::FileResult::kInUse:
      return OpenError::kInUse;
    case platform::FileResult::kFailed:
      return OpenError::kFailed;
  }
  return OpenError::kFailed;
}

}  // namespace

OpenError CheckRecordFile(const platform::File& file, HeaderBlock& header, std::uint32_t& slotSize) {
  const std::int64_t size = file.Size();
  if (size < 0) return OpenError::kFailed;
  if (size < std::int64_t{sizeof(FileHeader)}) return OpenError::kCutHeader;
  FileHeader sizes;
  if (file.ReadAt(&sizes, sizeof sizes, 0) != std::int64_t{sizeof sizes}) return OpenError::kFailed;
  if (sizes.headerBlockSize != sizeof(HeaderBlock) || sizes.categoryBlockSize != sizeof(CategoryBlock)) {
    return OpenError::kWrongSizes;
  }
  if (size < kFirstSlotOffset) return OpenError::kCutHeader;
  if (file.ReadAt(&header, sizeof header, kHeaderBlockOffset) != std::int64_t{sizeof header}) {
    return OpenError::kFailed;
  }
  const RecordKind* kind = FindKind(header);
  if (kind == nullptr) return OpenError::kUnknownKind;
  if (kind->slotSize != sizes.slotSize) return OpenError::kWrongSlotSize;
  slotSize = sizes.slotSize;
  return OpenError::kNone;
}

bool RefreshEnabled() {
  return refreshEnabled;
}

void SetRefreshEnabled(bool enabled) {
  refreshEnabled = enabled;
}

// ---- Life ----

RecordFile::RecordFile(std::string filePath, std::string_view givenPassword)
    : path(std::move(filePath)), password(givenPassword) {
  Open();
}

RecordFile::~RecordFile() {
  Close();
}

bool RecordFile::Create(const HeaderBlock& header, const CategoryBlock& categories, std::uint32_t newSlotSize,
                        std::string_view slots) {
  Close();
  const std::string image = NewFileImage(header, categories, newSlotSize, slots);
  if (image.empty()) return false;
  // Held until the new file has the name: who opens the path meanwhile waits, and gets the new one.
  platform::File old;
  if (platform::FileExists(path) && old.OpenExclusive(path) != platform::FileResult::kDone) return false;
  return platform::ReplaceFile(path, image.data(), image.size()) && Open();
}

bool RecordFile::CreateNew(const HeaderBlock& header, const CategoryBlock& categories,
                           std::uint32_t newSlotSize, std::string_view slots) {
  Close();
  const std::string image = NewFileImage(header, categories, newSlotSize, slots);
  return !image.empty() && platform::WriteNewFile(path, image.data(), image.size()) && Open();
}

bool RecordFile::Open() {
  if (file.IsOpen()) return true;
  openError = TryOpen();
  if (openError != OpenError::kNone) file.Close();
  return openError == OpenError::kNone;
}

OpenError RecordFile::TryOpen() {
  const OpenError opened = FromFileResult(file.OpenShared(path));
  if (opened != OpenError::kNone) return opened;
  HeaderBlock header;
  const bool firstTime = slotSize == 0;
  const OpenError checked = CheckRecordFile(file, header, slotSize);
  if (checked != OpenError::kNone) return checked;
  if (firstTime) counterAtOpen = header.changeCounter;

  const FileGuard guard(file);
  const bool counted = guard.Held() && AddToCounter<std::uint32_t>(offsetof(HeaderBlock, openCount), 1);
  return counted ? OpenError::kNone : OpenError::kFailed;
}

void RecordFile::Close() {
  if (!file.IsOpen()) return;
  {
    const FileGuard guard(file);
    std::uint32_t count = 0;
    const std::int64_t at = HeaderField(offsetof(HeaderBlock, openCount));
    // Who reset the count to 0 has taken this object out of it already.
    if (guard.Held() && ReadBytes(&count, sizeof count, at) && count > 0) {
      --count;
      WriteBytes(&count, sizeof count, at);
    }
  }
  file.Flush();
  file.Close();
}

// ---- The blocks before the slots ----

bool RecordFile::ReadBytes(void* buffer, std::size_t size, std::int64_t offset) const {
  return file.ReadAt(buffer, size, offset) == static_cast<std::int64_t>(size);
}

bool RecordFile::WriteBytes(const void* bytes, std::size_t size, std::int64_t offset) {
  return file.WriteAt(bytes, size, offset) == static_cast<std::int64_t>(size);
}

template <typename T>
bool RecordFile::AddToCounter(std::size_t fieldOffset, T change) {
  using Unsigned = std::make_unsigned_t<T>;  // a damaged counter at its limit wraps
  Unsigned value = 0;
  if (!ReadBytes(&value, sizeof value, HeaderField(fieldOffset))) return false;
  value += static_cast<Unsigned>(change);
  return WriteBytes(&value, sizeof value, HeaderField(fieldOffset));
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

bool RecordFile::WriteHeaderBlock(const HeaderBlock& header) {
  const FileGuard guard(file);
  return guard.Held() && WriteBytes(&header, sizeof header, kHeaderBlockOffset);
}

bool RecordFile::UpdateHeaderBlock(const std::function<void(HeaderBlock&)>& change) {
  const FileGuard guard(file);
  HeaderBlock before;
  if (!guard.Held() || !ReadHeaderBlock(before)) return false;
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

bool RecordFile::WriteCategoryBlock(const CategoryBlock& categories) {
  const FileGuard guard(file);
  return guard.Held() && WriteBytes(&categories, sizeof categories, kCategoryBlockOffset);
}

// ---- Rights ----

Access LevelOf(std::string_view password, const HeaderBlock& header) {
  if (password == ReadText(header.ownerPassword)) return Access::kOwner;
  if (password == ReadText(header.assistantPassword)) return Access::kAssistant;
  if (password == ReadText(header.readerPassword)) return Access::kReader;
  return Access::kNone;
}

Access RecordFile::AccessLevel() const {
  HeaderBlock header;
  return ReadHeaderBlock(header) ? LevelOf(password, header) : Access::kNone;
}

// A level that cannot be read allows nothing.
Result RecordFile::MayWrite() const {
  HeaderBlock header;
  if (!ReadHeaderBlock(header)) return Result::kFailed;
  return LevelOf(password, header) == Access::kReader ? Result::kRefused : Result::kDone;
}

// ---- Records ----

std::int64_t RecordFile::SlotsEnd() const {
  const std::int64_t size = file.Size();
  if (size < kFirstSlotOffset || slotSize == 0) return -1;
  return size - (size - kFirstSlotOffset) % slotSize;
}

bool RecordFile::IsSlotOffset(std::int64_t offset) const {
  return file.IsOpen() && offset >= kFirstSlotOffset && (offset - kFirstSlotOffset) % slotSize == 0 &&
         offset + slotSize <= SlotsEnd();
}

bool RecordFile::ReadSlot(void* slot, std::int32_t offset) const {
  return IsSlotOffset(offset) && ReadBytes(slot, slotSize, offset);
}

bool RecordFile::WriteSlot(const void* slot, std::int32_t offset) {
  return IsSlotOffset(offset) && WriteBytes(slot, slotSize, offset);
}

bool RecordFile::ReadRecord(void* slot, std::int32_t offset) const {
  return ReadSlot(slot, offset) && static_cast<const char*>(slot)[offsetof(RecordHeader, inUse)] != 0;
}

Result RecordFile::AddRecord(const void* slot) {
  const Result allowed = MayWrite();
  if (allowed != Result::kDone) return allowed;
  const FileGuard guard(file);
  if (!guard.Held()) return Result::kFailed;
  bool reused = false;
  const std::int64_t offset = FindPlace(reused);
  if (offset <= 0) return Result::kFailed;
  const Result result = Publish(slot, offset);
  if (result != Result::kDone && reused)
    AddToCounter<std::int32_t>(offsetof(HeaderBlock, freeSlotBalance), -1);
  return result;
}

// Writes a slot that nobody sees before its body is whole: as a free one first, then its in-use byte, then
// the counter that makes others look. A writer that dies in between leaves a free slot.
Result RecordFile::Publish(const void* slot, std::int64_t offset) {
  constexpr std::size_t kInUse = offsetof(RecordHeader, inUse);
  char body[kLargestSlotSize];
  std::memcpy(body, slot, slotSize);
  const char inUse = body[kInUse];
  body[kInUse] = 0;
  if (!WriteBytes(body, slotSize, offset) || !WriteBytes(&inUse, 1, SlotField(offset, kInUse))) {
    return Result::kFailed;
  }
  AddToCounter<std::uint64_t>(offsetof(HeaderBlock, changeCounter), 1);
  return Result::kDone;
}

// The offset for a new record, 0 or less when there is none. A slot that is taken again leaves the balance
// before it is written: dying in between loses a hint, while the other order would make the file refuse new
// records.
std::int64_t RecordFile::FindPlace(bool& reused) {
  std::int32_t balance = 0;
  if (!ReadBytes(&balance, sizeof balance, HeaderField(offsetof(HeaderBlock, freeSlotBalance)))) return 0;
  if (balance >= 0) {
    const std::int64_t end = SlotsEnd();
    return end <= kLargestOffset ? end : 0;
  }
  const std::int64_t offset = FindFreeSlot();
  if (offset <= 0) return 0;
  reused = AddToCounter<std::int32_t>(offsetof(HeaderBlock, freeSlotBalance), 1);
  return reused ? offset : 0;
}

std::int64_t RecordFile::FindFreeSlot() const {
  const std::size_t bytes = kSlotsPerRead * slotSize;
  const std::unique_ptr<char[]> slots(new (std::nothrow) char[bytes]());
  if (slots == nullptr) return 0;
  const std::int64_t end = SlotsEnd();
  for (std::int64_t offset = kFirstSlotOffset; offset < end; offset += static_cast<std::int64_t>(bytes)) {
    const int count = ReadSlots(slots.get(), offset);
    for (int i = 0; i < count; ++i) {
      const std::size_t at = static_cast<std::size_t>(i) * slotSize;
      if (slots[at + offsetof(RecordHeader, inUse)] == 0) return offset + static_cast<std::int64_t>(at);
    }
    if (count >= 0 && count < static_cast<int>(kSlotsPerRead)) break;
  }
  return 0;
}

int RecordFile::ReadSlots(void* buffer, std::int64_t offset) const {
  if (slotSize == 0 || offset < kFirstSlotOffset) return -1;
  if (offset > kLargestOffset) return 0;
  const auto addressable = static_cast<std::size_t>((kLargestOffset - offset) / slotSize + 1);
  const std::size_t wanted = std::min(kSlotsPerRead, addressable) * slotSize;
  const std::int64_t read = file.ReadAt(buffer, wanted, offset);
  return read < 0 ? -1 : static_cast<int>(read / slotSize);
}

Result RecordFile::WriteRecord(const void* slot, std::int32_t offset) {
  const Result allowed = MayWrite();
  if (allowed != Result::kDone) return allowed;
  const FileGuard guard(file);
  if (!guard.Held() || !WriteSlot(slot, offset)) return Result::kFailed;
  AddToCounter<std::uint64_t>(offsetof(HeaderBlock, changeCounter), 1);
  return Result::kDone;
}

Result RecordFile::DeleteRecord(std::int32_t offset) {
  const Result allowed = MayWrite();
  if (allowed != Result::kDone) return allowed;
  const FileGuard guard(file);
  const char free = 0;
  if (!guard.Held() || !IsSlotOffset(offset) ||
      !WriteBytes(&free, 1, SlotField(offset, offsetof(RecordHeader, inUse)))) {
    return Result::kFailed;
  }
  AddToCounter<std::uint64_t>(offsetof(HeaderBlock, changeCounter), 1);
  AddToCounter<std::int32_t>(offsetof(HeaderBlock, freeSlotBalance), -1);
  return Result::kDone;
}

bool RecordFile::LockRecord(std::int32_t offset) {
  const FileGuard guard(file);
  RecordHeader record;
  if (!guard.Held() || !IsSlotOffset(offset) || !ReadBytes(&record, sizeof record, offset)) return false;
  if (record.editLock == 1 || record.inUse == 0) return false;
  const char locked = 1;
  if (!WriteBytes(&locked, 1, SlotField(offset, offsetof(RecordHeader, editLock)))) return false;
  SetRefreshEnabled(false);
  return true;
}

bool RecordFile::UnlockRecord(std::int32_t offset) {
  SetRefreshEnabled(true);
  const FileGuard guard(file);
  RecordHeader record;
  if (!guard.Held() || !IsSlotOffset(offset) || !ReadBytes(&record, sizeof record, offset)) return false;
  const char unlocked = 0;
  return record.editLock != 0 &&
         WriteBytes(&unlocked, 1, SlotField(offset, offsetof(RecordHeader, editLock)));
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
  return ReadBytes(&counter, sizeof counter, HeaderField(offsetof(HeaderBlock, changeCounter)));
}

std::uint64_t RecordFile::GetChangeCounter() const {
  std::uint64_t counter = 0;
  return ReadChangeCounter(counter) ? counter : 0;
}

bool RecordFile::BumpChangeCounter() {
  const FileGuard guard(file);
  return guard.Held() && AddToCounter<std::uint64_t>(offsetof(HeaderBlock, changeCounter), 1);
}

// ---- Scans ----

bool RecordFile::ForEachRecord(const std::function<bool(const void* slot)>& visit) {
  RecordQuery query;
  query.AddMatchAll();
  query.Run(*this);
  std::vector<char> slot(slotSize);
  for (const std::int32_t offset : query.Offsets()) {
    if (!ReadSlot(slot.data(), offset)) std::fill(slot.begin(), slot.end(), '\0');
    if (!visit(slot.data())) return true;
  }
  return false;
}

}  // namespace core
