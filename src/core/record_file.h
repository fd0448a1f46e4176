// A record file that several copies of the program, on several machines, may have open at once: a calendar,
// an address book, the outgoing box. Every operation goes to the file; nothing is cached. What users see of
// each other is in the file's own bytes: a slot's in-use and edit-lock bytes and the counters of the header
// block.
//
// A record is addressed by the file offset of its slot, a positive 32-bit number. Every read-modify-write is
// made under the file's guard lock and writes only the bytes that change; a new record is published in the
// order body, in-use byte, counter, so that a writer that dies leaves a file that reads well. Use from one
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "core/record_format.h"
#include "core/result.h"
#include "platform/system/file.h"

namespace core {

// Why a file was not opened.
enum class OpenError {
  kNone,
  kMissing,
  kDenied,  // it may not be read and written
  kIsFolder,
  kInUse,          // another process holds it for itself
  kCutHeader,      // it ends before its first slot could begin
  kWrongSizes,     // its header or category block is not of the known size
  kUnknownKind,    // it is no kind of file the program knows
  kWrongSlotSize,  // its slots are not of its kind's size
  kFailed,         // reading or writing it failed
};

// What the password given for a file allows.
enum class Access : std::int32_t {
  kNone = -1,        // the password is none of the file's
  kOwner = 102,      // everything
  kAssistant = 103,  // adds and changes records, but neither sees nor changes confidential ones
  kReader = 104,     // sees records that are not confidential
};

// What a password allows in a file with this header block: the first of the three passwords that equals it
// decides.
Access LevelOf(std::string_view password, const HeaderBlock& header);

// Whether an open file is a record file that may be worked on; then answers its header block and the bytes of
// its slots. The sizes in it are compared with those of its kind before anything is read or allocated by
// them.
OpenError CheckRecordFile(const platform::File& file, HeaderBlock& header, std::uint32_t& slotSize);

// True while this process holds no edit lock, as far as the last lock or unlock tells: lists are not rebuilt
// under an open editor. One flag for the process.
bool RefreshEnabled();
void SetRefreshEnabled(bool enabled);

class RecordFile {
 public:
  // Opens the file. When that fails the object still serves for Create, and every other operation fails.
  // The password is what the user typed, empty for none.
  RecordFile(std::string filePath, std::string_view givenPassword);
  ~RecordFile();  // closes
  RecordFile(const RecordFile&) = delete;
  RecordFile& operator=(const RecordFile&) = delete;

  bool OpenFailed() const { return openError != OpenError::kNone; }
  OpenError LastOpenError() const { return openError; }
  const std::string& Path() const { return path; }
  const std::string& Password() const { return password; }
  void SetPassword(std::string_view newPassword) { password = newPassword; }

  // ---- Life ----

  // Makes a new file at the path and opens it. A file that is there is replaced, unless somebody has it open.
  // The path never names a file that is not whole. `slots` are the bytes of its first records, if any. False
  // when it could not be made or opened; what was there then stands.
  bool Create(const HeaderBlock& header, const CategoryBlock& categories, std::uint32_t slotSize,
              std::string_view slots = {});

  // The same where nothing may be replaced: false also when something is at the path, be it that another copy
  // made its file there at the same instant.
  bool CreateNew(const HeaderBlock& header, const CategoryBlock& categories, std::uint32_t slotSize,
                 std::string_view slots = {});

  // Opens the file and counts this object in the header block. True when it is open already.
  bool Open();

  // Takes this object out of the count, brings everything to the disk and closes. Does nothing when closed.
  void Close();
  bool IsOpen() const { return file.IsOpen(); }

  // Brings everything written to the disk. False on failure or when closed.
  bool Flush() { return file.Flush(); }

  // ---- The blocks before the slots ----

  bool ReadFileHeader(FileHeader& header) const;
  bool ReadHeaderBlock(HeaderBlock& header) const;
  bool ReadCategoryBlock(CategoryBlock& categories) const;

  // Writes the whole block, counters included: only for a file that nobody else has open.
  bool WriteHeaderBlock(const HeaderBlock& header);

  // Reads the header block, lets `change` alter it and writes the bytes that it altered, as one step among
  // all users of the file. `change` must not use this file.
  bool UpdateHeaderBlock(const std::function<void(HeaderBlock&)>& change);

  bool WriteCategoryBlock(const CategoryBlock& categories);

  // Bytes of a slot, 0 before the first successful open.
  std::uint32_t SlotSize() const { return slotSize; }
  std::int32_t FirstSlotOffset() const { return kFirstSlotOffset; }

  // The change counter when the file was first opened, 10 before that.
  std::uint64_t CounterAtOpen() const { return counterAtOpen; }

  // ---- Rights ----

  // Compares the password with the file's three, as they are now. kNone also when they cannot be read.
  Access AccessLevel() const;

  // ---- Records; a buffer holds SlotSize() bytes and belongs to the caller ----

  // Moves a whole slot. False when the offset is not one of a whole slot or the transfer fails or falls
  // short.
  bool ReadSlot(void* slot, std::int32_t offset) const;
  bool WriteSlot(const void* slot, std::int32_t offset);

  // ReadSlot; false also when the slot is free: the record was deleted, perhaps by another user.
  bool ReadRecord(void* slot, std::int32_t offset) const;

  // Adds a record that the caller prepared whole (see InitRecordHeader). It takes a free slot when the header
  // block tells of one, else it is appended. kFailed when there is no place or the write fails.
  Result AddRecord(const void* slot);

  Result WriteRecord(const void* slot, std::int32_t offset);

  // Frees the slot; its other bytes, the edit lock among them, stay.
  Result DeleteRecord(std::int32_t offset);

  // Takes the edit lock and clears RefreshEnabled. False when the record is locked, free or cannot be read.
  bool LockRecord(std::int32_t offset);

  // Sets RefreshEnabled and gives the edit lock back, also that of a record deleted meanwhile. False when the
  // record is not locked.
  bool UnlockRecord(std::int32_t offset);

  // Fills the header of a new record (InitRecordHeader) in a slot of SlotSize() zero bytes.
  bool InitRecord(void* slot) const;

  // ---- Changes by others ----

  // Grows with every record added, written or deleted, by whomever. 0 when it cannot be read.
  std::uint64_t GetChangeCounter() const;
  bool ReadChangeCounter(std::uint64_t& counter) const;
  bool BumpChangeCounter();

  // ---- Scans ----

  // Reads up to kSlotsPerRead slots from `offset`, the offset of a slot. Returns the whole slots read, 0 at
  // the end of the file; -1 when the read fails. Slots whose offset has no 31 bits do not count.
  int ReadSlots(void* buffer, std::int64_t offset) const;

  // Reads `size` bytes at a file offset. False on failure or a short read.
  bool ReadBytes(void* buffer, std::size_t size, std::int64_t offset) const;

  // The offset after the last whole slot; -1 when the file's size is not to be had.
  std::int64_t SlotsEnd() const;

  // Calls `visit` with each live record that the user may see, in file order, at most as many as a
  // RecordQuery lists; stops when it returns false. A record that cannot be read is visited as zero bytes.
  // True when it was stopped early.
  bool ForEachRecord(const std::function<bool(const void* slot)>& visit);

 private:
  Result MayWrite() const;
  OpenError TryOpen();
  bool IsSlotOffset(std::int64_t offset) const;
  std::int64_t FindPlace(bool& reused);
  std::int64_t FindFreeSlot() const;
  Result Publish(const void* slot, std::int64_t offset);
  bool WriteBytes(const void* bytes, std::size_t size, std::int64_t offset);

  // Adds to a number of the header block. The guard must be held.
  template <typename T>
  bool AddToCounter(std::size_t fieldOffset, T change);

  std::string path;
  std::string password;
  platform::File file;
  OpenError openError = OpenError::kNone;
  std::uint32_t slotSize = 0;
  std::uint64_t counterAtOpen = 10;
};

}  // namespace core
