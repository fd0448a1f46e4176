// Adding and changing many records of a RecordFile at once.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "core/store/record_file.h"

namespace core {

Result RecordFile::AddRecords(const void* slots, std::size_t count, std::size_t& added,
                              std::uint64_t* counter) {
  added = 0;
  const platform::FileGuard guard(file);
  if (!Entered(guard)) return Result::kFailed;
  const Result allowed = Allowed();
  if (allowed != Result::kDone) return allowed;
  std::uint64_t now = 0;
  if (counter != nullptr && (!ReadChangeCounter(now) || (now != *counter && !Fail(FileFault::kChanged)))) {
    return Result::kFailed;
  }
  const char* records = static_cast<const char*>(slots);
  const bool all = FillFreeSlots(records, count, added) && Append(records, count, added);
  const FileFault why = fault;
  const Result counted = added == 0 ? Result::kDone : CountChange();
  if (counter != nullptr && counted == Result::kDone && added != 0) ++*counter;
  if (all) return counted;
  Fail(why);
  return Result::kFailed;
}

Result RecordFile::ChangeRecords(const std::vector<RecordKey>& keys, const SlotJudge& judge,
                                 std::size_t& changed) {
  changed = 0;
  const platform::FileGuard guard(file);
  if (!Entered(guard)) return Result::kFailed;
  const Result allowed = Allowed();
  if (allowed != Result::kDone) return allowed;
  char slot[kLargestSlotSize];
  const char free = 0;
  std::int32_t freed = 0;
  bool all = true;
  for (std::size_t i = 0; all && i < keys.size(); ++i) {
    const bool there = ReadRecord(slot, keys[i]);
    all = there || fault == FileFault::kDeleted;
    const SlotFate fate = all ? judge(i, there ? slot : nullptr) : SlotFate::kStays;
    if (!there || fate == SlotFate::kStays) continue;
    const std::int64_t inUse = keys[i].offset + std::int64_t{offsetof(RecordHeader, inUse)};
    all = fate == SlotFate::kWritten ? WriteSlot(slot, keys[i].offset) : WriteBytes(&free, 1, inUse);
    if (all) ++changed;
    if (all && fate == SlotFate::kDeleted) ++freed;
  }
  const FileFault why = fault;
  const Result counted = changed == 0 ? Result::kDone : CountChange();
  // As in Delete.
  if (freed != 0) AddToCounter<std::int32_t>(kFreeSlotBalanceOffset, -freed);
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
