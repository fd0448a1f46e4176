// Adding many records to a RecordFile at once.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "core/store/record_file.h"

namespace core {

Result RecordFile::AddRecords(const void* slots, std::size_t count, std::size_t& added) {
  added = 0;
  const platform::FileGuard guard(file);
  if (!Entered(guard)) return Result::kFailed;
  const Result allowed = Allowed();
  if (allowed != Result::kDone) return allowed;
  const char* records = static_cast<const char*>(slots);
  const bool all = FillFreeSlots(records, count, added) && Append(records, count, added);
  const FileFault why = fault;
  const Result counted = added == 0 ? Result::kDone : CountChange();
  if (all) return counted;
  Fail(why);
  return Result::kFailed;
}

// As many records as the header block tells of free slots. A balance that is higher than what is free stops a
// batch as it stops a single record.
bool RecordFile::FillFreeSlots(const char* records, std::size_t count, std::size_t& added) {
  std::int32_t balance = 0;
  if (!ReadBytes(&balance, sizeof balance, kFreeSlotBalanceOffset)) return false;
  if (balance >= 0) return true;
  const std::size_t wanted = std::min(count, static_cast<std::size_t>(-std::int64_t{balance}));
  const std::vector<std::int64_t> places = FindFreeSlots(wanted);
  const FileFault why = fault;
  // As in FindPlace, dying in between loses a hint at most.
  const auto taken = static_cast<std::int32_t>(places.size());
  if (taken != 0 && !AddToCounter<std::int32_t>(kFreeSlotBalanceOffset, taken)) return false;
  for (const std::int64_t place : places) {
    if (!PutSlot(records + added * slotSize, place)) {
      const FileFault failure = fault;
      AddToCounter<std::int32_t>(kFreeSlotBalanceOffset, static_cast<std::int32_t>(added) - taken);
      return Fail(failure);
    }
    ++added;
  }
  return places.size() == wanted || Fail(why);
}

// The others, written in one go as free slots and then made live one after the other. Of a batch that does
// not fit whole on the disk nothing stays.
bool RecordFile::Append(const char* records, std::size_t count, std::size_t& added) {
  const std::int64_t sizeBefore = file.Size();
  const std::int64_t end = SlotsEnd();
  if (end <= 0) return Fail(FileFault::kReadFailed);
  const auto width = static_cast<std::int64_t>(slotSize);
  const std::int64_t room = end < kOffsetsEnd ? (kOffsetsEnd - end + width - 1) / width : 0;
  const std::size_t fitting = std::min(count - added, static_cast<std::size_t>(room));
  const std::unique_ptr<char[]> bodies(new (std::nothrow) char[fitting * slotSize + 1]);
  if (bodies == nullptr) return Fail(FileFault::kWriteFailed);
  constexpr std::size_t kInUse = offsetof(RecordHeader, inUse);
  const char* const first = records + added * slotSize;
  std::memcpy(bodies.get(), first, fitting * slotSize);
  for (std::size_t i = 0; i < fitting; ++i) bodies[i * slotSize + kInUse] = 0;
  std::size_t live = 0;
  bool written = fitting == 0 || WriteBytes(bodies.get(), fitting * slotSize, end);
  while (written && live < fitting) {
    const std::int64_t place = end + static_cast<std::int64_t>(live * slotSize);
    written = WriteBytes(first + live * slotSize + kInUse, 1, place + static_cast<std::int64_t>(kInUse));
    if (written) ++live;
  }
  added += live;
  if (written) return added == count || Fail(FileFault::kNoPlace);
  const FileFault why = fault;
  TakeBackAddition(false, live == 0 ? sizeBefore : end + static_cast<std::int64_t>(live * slotSize));
  return Fail(why);
}

}  // namespace core
