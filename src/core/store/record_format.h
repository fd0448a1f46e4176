// The bytes of a record file: file header, header block, category block, and the header that every record
// begins with. docs/file-format.md is the full description; the structures here are copied to and from the
// file whole.
//
// A record file is one of three kinds, told by a text in its header block; the kind decides the size of its
// slots.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/date_time.h"
#include "core/store/text_field.h"

namespace core {

#pragma pack(push, 1)

// The first bytes of the file.
struct FileHeader {
  std::uint32_t headerBlockSize;    // sizeof(HeaderBlock)
  std::uint32_t categoryBlockSize;  // sizeof(CategoryBlock)
  std::uint32_t slotSize;           // of the file's kind
};

// The name under which a user is known to the event server.
struct ServerIdentity {
  std::uint8_t flag;
  char userName[30];
  char email[114];
  char thirdText[60];
};

// The first fields of a ServerIdentity: in the header block, its third text is the three passwords.
struct OwnerNames {
  std::uint8_t flag;
  char userName[30];
  char email[114];
};

// What describes the file as a whole, at file offset 12.
struct HeaderBlock {
  std::uint32_t blockSize;
  char kind[30];
  char kindDetail[30];
  std::uint32_t formatWord;
  std::uint32_t secondFormatWord;
  OwnerNames ownerIdentity;
  char ownerPassword[20];
  char assistantPassword[20];
  char readerPassword[20];
  ServerIdentity secondIdentity;
  std::uint32_t thirdFormatWord;
  char serverAddress[260];
  char serverPort[260];
  std::int32_t freeSlotBalance;  // minus the number of deleted slots not yet taken again; a hint
  std::uint64_t changeCounter;   // grows by one with every record added, written or deleted
  std::uint32_t openCount;       // RecordFile objects, in all processes, that have the file open
  char reserved[559];
};

struct CategoryEntry {
  char name[30];
  std::int32_t value;  // -1 in a default entry, else without meaning
};

inline constexpr std::size_t kCategoryEntries = 30;

// The category names offered for the file's records, at file offset 1593.
struct CategoryBlock {
  std::uint32_t blockSize;
  std::uint32_t zero;
  std::uint32_t count;  // may exceed the entries that are kept
  CategoryEntry entries[kCategoryEntries];
};

// What every slot begins with.
struct RecordHeader {
  std::uint32_t recordSize;
  std::uint8_t inUse;     // 1 live, 0 free
  std::uint8_t editLock;  // 1 while some user edits the record
  std::uint64_t recordId;
  std::uint8_t confidential;  // 1: only the Owner level sees it
  std::uint8_t zero;
  char category[30];
  std::int32_t categoryValue;
  Date creationDate;
  TimeOfDay creationTime;
  ServerIdentity ownerIdentity;
  ServerIdentity secondIdentity;
  Date secondDate;
  TimeOfDay secondTime;
  char eventSubject[30];  // of an internet event
  std::uint8_t eventFlag;
  std::uint8_t eventByte;
  std::uint8_t eventRole;
};

#pragma pack(pop)

static_assert(sizeof(FileHeader) == 12);
static_assert(offsetof(FileHeader, headerBlockSize) == 0 && offsetof(FileHeader, categoryBlockSize) == 4);
static_assert(offsetof(FileHeader, slotSize) == 8);

static_assert(sizeof(ServerIdentity) == 205 && offsetof(ServerIdentity, flag) == 0);
static_assert(offsetof(ServerIdentity, userName) == 1 && offsetof(ServerIdentity, email) == 31);
static_assert(offsetof(ServerIdentity, thirdText) == 145 && sizeof(OwnerNames) == 145);
static_assert(offsetof(OwnerNames, flag) == 0 && offsetof(OwnerNames, userName) == 1);
static_assert(offsetof(OwnerNames, email) == 31);

static_assert(sizeof(HeaderBlock) == 1581);
static_assert(offsetof(HeaderBlock, blockSize) == 0 && offsetof(HeaderBlock, kind) == 4);
static_assert(offsetof(HeaderBlock, kindDetail) == 34 && offsetof(HeaderBlock, formatWord) == 64);
static_assert(offsetof(HeaderBlock, secondFormatWord) == 68 && offsetof(HeaderBlock, ownerIdentity) == 72);
static_assert(offsetof(HeaderBlock, ownerPassword) == 217 && offsetof(HeaderBlock, assistantPassword) == 237);
static_assert(offsetof(HeaderBlock, readerPassword) == 257 && offsetof(HeaderBlock, secondIdentity) == 277);
static_assert(offsetof(HeaderBlock, thirdFormatWord) == 482 && offsetof(HeaderBlock, serverAddress) == 486);
static_assert(offsetof(HeaderBlock, serverPort) == 746 && offsetof(HeaderBlock, freeSlotBalance) == 1006);
static_assert(offsetof(HeaderBlock, changeCounter) == 1010 && offsetof(HeaderBlock, openCount) == 1018);
static_assert(offsetof(HeaderBlock, reserved) == 1022);

static_assert(sizeof(CategoryEntry) == 34 && offsetof(CategoryEntry, name) == 0);
static_assert(offsetof(CategoryEntry, value) == 30);
static_assert(sizeof(CategoryBlock) == 1032 && offsetof(CategoryBlock, blockSize) == 0);
static_assert(offsetof(CategoryBlock, zero) == 4 && offsetof(CategoryBlock, count) == 8);
static_assert(offsetof(CategoryBlock, entries) == 12);

static_assert(sizeof(RecordHeader) == 549 && offsetof(RecordHeader, recordSize) == 0);
static_assert(offsetof(RecordHeader, inUse) == 4 && offsetof(RecordHeader, editLock) == 5);
static_assert(offsetof(RecordHeader, recordId) == 6 && offsetof(RecordHeader, confidential) == 14);
static_assert(offsetof(RecordHeader, zero) == 15 && offsetof(RecordHeader, category) == 16);
static_assert(offsetof(RecordHeader, categoryValue) == 46 && offsetof(RecordHeader, creationDate) == 50);
static_assert(offsetof(RecordHeader, creationTime) == 62 && offsetof(RecordHeader, ownerIdentity) == 78);
static_assert(offsetof(RecordHeader, secondIdentity) == 283 && offsetof(RecordHeader, secondDate) == 488);
static_assert(offsetof(RecordHeader, secondTime) == 500 && offsetof(RecordHeader, eventSubject) == 516);
static_assert(offsetof(RecordHeader, eventFlag) == 546 && offsetof(RecordHeader, eventByte) == 547);
static_assert(offsetof(RecordHeader, eventRole) == 548);

inline constexpr std::int64_t kHeaderBlockOffset = sizeof(FileHeader);
inline constexpr std::int64_t kFreeSlotBalanceOffset =
    kHeaderBlockOffset + std::int64_t{offsetof(HeaderBlock, freeSlotBalance)};
inline constexpr std::int64_t kChangeCounterOffset =
    kHeaderBlockOffset + std::int64_t{offsetof(HeaderBlock, changeCounter)};
inline constexpr std::int64_t kOpenCountOffset =
    kHeaderBlockOffset + std::int64_t{offsetof(HeaderBlock, openCount)};
inline constexpr std::int64_t kCategoryBlockOffset = kHeaderBlockOffset + std::int64_t{sizeof(HeaderBlock)};
inline constexpr std::int32_t kFirstSlotOffset =
    static_cast<std::int32_t>(kCategoryBlockOffset + std::int64_t{sizeof(CategoryBlock)});

// Offsets of slots have 31 bits: a slot from here on has none.
inline constexpr std::int64_t kOffsetsEnd = std::int64_t{1} << 31;

// Slots are read this many at a time.
#ifdef DAYBRIX_SLOTS_PER_READ  // set where a small file is to take several reads
inline constexpr std::size_t kSlotsPerRead = DAYBRIX_SLOTS_PER_READ;
#else
inline constexpr std::size_t kSlotsPerRead = 100;
#endif

// A kind of record file.
struct RecordKind {
  std::string_view kind;
  std::string_view kindDetail;
  std::uint32_t slotSize;
};

inline constexpr RecordKind kCalendarKind{"Calendar", "Organizer", 2627};
inline constexpr RecordKind kAddressKind{"Nameleaf", "Nameleaf", 859};
inline constexpr RecordKind kSendKind{"SendRecord", "SendRecord", 908};
inline constexpr std::size_t kLargestSlotSize = 2627;

// The identity that a new file gets.
inline constexpr std::string_view kDefaultOwnerName = "Daybrix";
inline constexpr std::string_view kDefaultOwnerEmail = "DaybrixMail";

// The kind named in a header block; null for an unknown one.
const RecordKind* FindKind(const HeaderBlock& header);

// Fills the header block of a new file. The server's address and port come from section "eServer" of
// Daybrix.ini.
void InitHeaderBlock(HeaderBlock& block, std::string_view kind, std::string_view kindDetail,
                     std::uint32_t formatWord);

// The category block of a new file: fifteen names, each with value -1.
CategoryBlock DefaultCategories();

// The bytes of a whole new file whose first records are `slots`. Empty when the slot size is not the kind's
// or the slots are not whole.
std::string NewFileImage(const HeaderBlock& header, const CategoryBlock& categories, std::uint32_t slotSize,
                         std::string_view slots);

// Fills the header of a new record in a slot that the caller has zeroed: live, unlocked, with a new id, made
// now, by the owner of the file whose header block is given. The flag byte of both identities is left alone.
// The third text of both becomes a copy of the file's Owner password: whoever reads the file reads it.
void InitRecordHeader(RecordHeader& record, std::uint32_t slotSize, const HeaderBlock& file);

// 64 random bits that name a record across files and machines.
std::uint64_t NewRecordId();

}  // namespace core
