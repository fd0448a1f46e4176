// A record file that several copies of the program, on several machines, may have open at once: a calendar,
// an address book, the outgoing box. Every operation goes to the file; nothing is cached here. What users see
// of each other is in the file's own bytes: a slot's in-use and edit-lock bytes and the counters of the
// header block.
//
// A record is addressed by the file offset of its slot, a positive 32-bit number, and named by its key
// (record_key.h): an operation that is given a key touches nothing when the slot is free or another record's
// by now. Every read-modify-write is made under the file's guard lock and writes only the bytes that change;
// a new record is published in the order body, in-use byte, counter, so that a writer that dies leaves a file
// that reads well. Use from one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/store/access.h"
#include "core/store/file_fault.h"
#include "core/store/opening.h"
#include "core/store/record_format.h"
#include "core/store/record_key.h"
#include "core/store/result.h"
#include "platform/system/file.h"

namespace core {

// True while this process holds no edit lock, as far as the last lock or unlock tells: lists are not rebuilt
// under an open editor. One flag for the process.
bool RefreshEnabled();
void SetRefreshEnabled(bool enabled);

// How a file is opened. Who only reads writes nothing at all, the open count included, and so can read what
// may not be written; every operation that changes the file then fails. Where it would change nothing anyhow
// (kAsReader), the password gives a Reader's rights at most.
enum class OpenMode { kReadAndWrite, kReadOnly, kAsReader };

class RecordFile {
 public:
  // Opens the file. When that fails the object still serves for Create, and every other operation fails.
  // The password is what the user typed, empty for none.
  RecordFile(std::string filePath, std::string_view givenPassword,
             OpenMode openMode = OpenMode::kReadAndWrite);
  ~RecordFile();  // closes
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  [[nodiscard]] bool OpenFailed() const { return openError != OpenError::kNone; }
  OpenError LastOpenError() const { return openError; }
  const std::string& Path() const { return path; }
  const std::string& Password() const { return password; }
  void SetPassword(std::string_view newPassword) { password = newPassword; }

  // Why the last operation that failed did.
  FileFault LastFault() const { return fault; }

  // ---- Life ----

  // Makes a new file at the path and opens it. A file that is there is replaced, unless somebody has it open.
  // The path never names a file that is not whole. `slots` are the bytes of its first records, if any. False
  // when it could not be made or opened; what was there then stands.
  [[nodiscard]] bool Create(const HeaderBlock& header, const CategoryBlock& categories,
                            std::uint32_t slotSize, std::string_view slots = {});

  // Opens the file and, unless it is only read, counts this object in the header block. True when it is open
  // already.
  [[nodiscard]] bool Open();

  // Takes this object out of the count, brings everything to the disk and closes. Does nothing when closed.
  // With an edit lock that could not be given back it stays in the count, so that whoever opens the file next
  // brings it in order (RepairCheck), which clears the lock.
  void Close();
  bool IsOpen() const { return file.IsOpen(); }

  // Whether the file was opened for reading alone.
  bool IsOnlyRead() const { return mode != OpenMode::kReadAndWrite; }

  // Whether the path could be opened for reading and writing now, as far as the rights say.
  bool MayBeWritten() const { return file.MayBeWritten(); }

  // What the path names now, compared with the open file.
  platform::FileAtPath PathState() const { return file.PathState(); }

  // Whether anybody else has the file open; where locks do not reach, as its open count says.
  bool UsedByOthers() const;

  // The open file itself, for who copies it whole.
  const platform::File& Opened() const { return file; }

  // Brings everything written to the disk. False on failure or when closed.
  [[nodiscard]] bool Flush() { return file.Flush() || Fail(FileFault::kWriteFailed); }

  // ---- The blocks before the slots ----

  [[nodiscard]] bool ReadFileHeader(FileHeader& header) const;
  [[nodiscard]] bool ReadHeaderBlock(HeaderBlock& header) const;
  [[nodiscard]] bool ReadCategoryBlock(CategoryBlock& categories) const;

  // Writes the whole block, counters included: only for a file that nobody else has open.
  [[nodiscard]] bool WriteHeaderBlock(const HeaderBlock& header);

  // Reads the header block, lets `change` alter it and writes the bytes that it altered, as one step among
  // all users of the file. `change` must not use this file.
  [[nodiscard]] bool UpdateHeaderBlock(const std::function<void(HeaderBlock&)>& change);

  // kRefused at a level that allows no changes.
  [[nodiscard]] Result WriteCategoryBlock(const CategoryBlock& categories);

  // Bytes of a slot, 0 before the first successful open.
  std::uint32_t SlotSize() const { return slotSize; }
  std::int32_t FirstSlotOffset() const { return kFirstSlotOffset; }

  // The change counter when the file was first opened, 10 before that.
  std::uint64_t CounterAtOpen() const { return counterAtOpen; }

  // ---- Rights ----

  // Compares the password with the file's three, as they are now. kNone also when they cannot be read.
  Access AccessLevel() const;
  // The same with those of a header block that was read from this file.
  Access LevelIn(const HeaderBlock& header) const;

  // ---- Records; a buffer holds SlotSize() bytes and belongs to the caller ----

  // Moves a whole slot. False when the offset is not one of a whole slot or the transfer fails or falls
  // short.
  [[nodiscard]] bool ReadSlot(void* slot, std::int32_t offset) const;
  [[nodiscard]] bool WriteSlot(const void* slot, std::int32_t offset);

  // ReadSlot; false also when the slot is free, or no longer that record's: it was deleted, perhaps by
  // another user.
  [[nodiscard]] bool ReadRecord(void* slot, std::int32_t offset) const;
  [[nodiscard]] bool ReadRecord(void* slot, const RecordKey& key) const;

  // Adds a record that the caller prepared whole (see InitRecordHeader). It takes a free slot when the header
  // block tells of one, else it is appended. Here and below, kRefused at a level that allows no changes, none
  // included, and kFailed with the file as it was. To an address book a Reader may add. `place`, if any, gets
  // the offset of the slot.
  [[nodiscard]] Result AddRecord(const void* slot, std::int32_t* place = nullptr);

  // Adds `count` records, which lie one behind the other, as one change: under one guard, and counted once.
  // `added` says how many of them are in the file, from the first on, also when the result is kFailed. With
  // `counter` they are added only while the change counter is that (else kFailed, kChanged); it becomes what
  // the counter is then.
  [[nodiscard]] Result AddRecords(const void* slots, std::size_t count, std::size_t& added,
                                  std::uint64_t* counter = nullptr);

  // What becomes of a record; and who says so, having altered the slot where it is to be written. The slot is
  // null where the record is gone. An edit lock that somebody holds is for him to respect. He must not use
  // the file's operations that change it.
  enum class SlotFate { kStays, kWritten, kDeleted };
  using SlotJudge = std::function<SlotFate(std::size_t index, void* slot)>;

  // Asks for each of the records as it is now and does what is answered, as one change: under one guard, and
  // counted once. Stops at what cannot be read or written; `changed` says how many were written or deleted.
  [[nodiscard]] Result ChangeRecords(const std::vector<RecordKey>& keys, const SlotJudge& judge,
                                     std::size_t& changed);

  [[nodiscard]] Result WriteRecord(const void* slot, std::int32_t offset);
  [[nodiscard]] Result WriteRecord(const void* slot, const RecordKey& key);

  // Frees the slot; its other bytes, the edit lock among them, stay.
  [[nodiscard]] Result DeleteRecord(std::int32_t offset);
  [[nodiscard]] Result DeleteRecord(const RecordKey& key);

  // Takes the edit lock and clears RefreshEnabled. False when the record is locked, free or cannot be read,
  // or the password allows nothing.
  [[nodiscard]] bool LockRecord(std::int32_t offset);
  [[nodiscard]] bool LockRecord(const RecordKey& key);

  // Sets RefreshEnabled and gives the edit lock back, also that of a record deleted meanwhile. False when the
  // record is not locked (kNotLocked), the slot is another record's (kDeleted), or, after a second try, the
  // file could not be written: it then tries again with the next lock that is taken, and when it closes.
  bool UnlockRecord(std::int32_t offset);
  bool UnlockRecord(const RecordKey& key);

  // Fills the header of a new record (InitRecordHeader) in a slot of SlotSize() zero bytes.
  [[nodiscard]] bool InitRecord(void* slot) const;

  // ---- Changes by others ----

  // Grows with every record added, written or deleted, by whomever. 0 when it cannot be read.
  std::uint64_t GetChangeCounter() const;
  [[nodiscard]] bool ReadChangeCounter(std::uint64_t& counter) const;
  [[nodiscard]] bool BumpChangeCounter();

  // Reads what the system says of the file, then the header block.
  [[nodiscard]] bool LookAt(platform::FileState& state, HeaderBlock& header) const;

  // What a reader has worked out from the file and keeps beside it: it ends with this object. Each kind of
  // file has at most one class of it, which proves before every use that the file has not changed.
  struct Kept {
    Kept() = default;
    virtual ~Kept() = default;
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;
  };
  std::unique_ptr<Kept>& KeptBeside() const { return kept; }

  // ---- Scans ----

  // Reads up to kSlotsPerRead slots from `offset`, the offset of a slot. Returns the whole slots read, 0 at
  // the end of the file; -1 when the read fails. Slots whose offset has no 31 bits do not count.
  int ReadSlots(void* buffer, std::int64_t offset) const;

  // Reads `size` bytes at a file offset. False on failure or a short read.
  [[nodiscard]] bool ReadBytes(void* buffer, std::size_t size, std::int64_t offset) const;

  // The offset after the last whole slot; -1 when the file's size is not to be had.
  std::int64_t SlotsEnd() const;

 private:
  // The id that a slot must have; none for whichever it has.
  using WantedId = std::optional<std::uint64_t>;
  struct LeftLock {
    std::int32_t offset;
    WantedId id;
  };

  bool Fail(FileFault why) const;
  bool Entered(const platform::FileGuard& guard) const;
  bool IsStillMine() const;
  Result Allowed() const;
  OpenError TryOpen(bool& replaced);
  bool ReplaceWith(const std::string& image);
  void LeaveCount();
  bool IsSlotOffset(std::int64_t offset) const;
  bool ReadWanted(RecordHeader& record, std::int64_t offset, WantedId id) const;
  std::int64_t FindPlace(bool& reused);
  void TakeBackAddition(bool reused, std::int64_t sizeBefore);
  std::vector<std::int64_t> FindFreeSlots(std::size_t wanted) const;
  bool PutSlot(const void* slot, std::int64_t offset);
  bool FillFreeSlots(const char* records, std::size_t count, std::size_t& added);
  bool Append(const char* records, std::size_t count, std::size_t& added);
  Result Write(const void* slot, std::int32_t offset, WantedId id);
  Result Delete(std::int32_t offset, WantedId id);
  bool Lock(std::int32_t offset, WantedId id);
  bool Unlock(std::int32_t offset, WantedId id);
  bool ClearLock(std::int32_t offset, WantedId id);
  bool NothingToUnlock() const;
  void ClearLeftLocks();
  bool WriteBytes(const void* bytes, std::size_t size, std::int64_t offset);

  // Adds to a number at a file offset. The guard must be held.
  template <typename T>
  bool AddToCounter(std::int64_t offset, T change);
  Result CountChange();

  std::string path;
  std::string password;
  OpenMode mode;
  mutable platform::File file;  // opened anew by a look at the counter where locks do not reach
  OpenError openError = OpenError::kNone;
  std::uint32_t slotSize = 0;
  std::uint64_t counterAtOpen = 10;
  mutable std::unique_ptr<Kept> kept;
  mutable FileFault fault = FileFault::kNone;
  std::vector<LeftLock> leftLocks;  // edit locks that could not be given back
};

}  // namespace core
