#include "core/calendar/file_check.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "core/calendar/appointment.h"
#include "core/calendar/categories.h"
#include "core/calendar/repeat_rule.h"

namespace core {
namespace {

constexpr std::uint32_t kMostEvery = 99;
constexpr int kSomeLeapYear = 2000;

const char* const kInFileHeader = "file header";
const char* const kInHeaderBlock = "header block";
const char* const kInCategoryBlock = "category block";
const char* const kInSlot = "slot";
const char* const kAtEnd = "end of file";

struct TextField {
  const char* name;
  std::size_t offset;
  std::size_t size;
};

constexpr TextField kHeaderTexts[] = {
    {"kind", offsetof(HeaderBlock, kind), sizeof HeaderBlock::kind},
    {"kindDetail", offsetof(HeaderBlock, kindDetail), sizeof HeaderBlock::kindDetail},
    {"ownerIdentity.userName", offsetof(HeaderBlock, ownerIdentity.userName), sizeof OwnerNames::userName},
    {"ownerIdentity.email", offsetof(HeaderBlock, ownerIdentity.email), sizeof OwnerNames::email},
    {"ownerPassword", offsetof(HeaderBlock, ownerPassword), sizeof HeaderBlock::ownerPassword},
    {"assistantPassword", offsetof(HeaderBlock, assistantPassword), sizeof HeaderBlock::assistantPassword},
    {"readerPassword", offsetof(HeaderBlock, readerPassword), sizeof HeaderBlock::readerPassword},
    {"secondIdentity.userName", offsetof(HeaderBlock, secondIdentity.userName),
     sizeof ServerIdentity::userName},
    {"secondIdentity.email", offsetof(HeaderBlock, secondIdentity.email), sizeof ServerIdentity::email},
    {"serverAddress", offsetof(HeaderBlock, serverAddress), sizeof HeaderBlock::serverAddress},
    {"serverPort", offsetof(HeaderBlock, serverPort), sizeof HeaderBlock::serverPort},
};

constexpr TextField kRecordTexts[] = {
    {"category", offsetof(RecordHeader, category), sizeof RecordHeader::category},
    {"ownerIdentity.userName", offsetof(RecordHeader, ownerIdentity.userName),
     sizeof ServerIdentity::userName},
    {"ownerIdentity.email", offsetof(RecordHeader, ownerIdentity.email), sizeof ServerIdentity::email},
    {"secondIdentity.userName", offsetof(RecordHeader, secondIdentity.userName),
     sizeof ServerIdentity::userName},
    {"secondIdentity.email", offsetof(RecordHeader, secondIdentity.email), sizeof ServerIdentity::email},
};

constexpr TextField kAppointmentTexts[] = {
    {"alarmTone", offsetof(Appointment, alarmTone), sizeof Appointment::alarmTone},
    {"alarmStartTarget", offsetof(Appointment, alarmStartTarget), sizeof Appointment::alarmStartTarget},
    {"attachment", offsetof(Appointment, attachment), sizeof Appointment::attachment},
    {"subject", offsetof(Appointment, subject), sizeof Appointment::subject},
    {"notes", offsetof(Appointment, notes), sizeof Appointment::notes},
};

std::string Number(std::int64_t number) {
  return std::to_string(number);
}

std::string Spell(const Date& date) {
  return Number(date.year) + "-" + Number(date.month) + "-" + Number(date.day);
}

bool IsTimeOfDay(const TimeOfDay& time) {
  const int slot = TimeSlot(time);
  return slot >= 0 && slot < kDaySlots && (time.half == kBeforeNoon || time.half == kAfterNoon);
}

class Checker {
 public:
  Checker(const platform::File& openFile, const FindingReport& findingReport)
      : file(openFile), report(findingReport), size(openFile.Size()), used(openFile.UsedByOthers()) {}

  void Run() {
    if (CheckSizes() && CheckHeaderBlock() && CheckCategories()) {
      CheckSlots();
      CheckTail();
      CheckBalance();
      CheckIds();
    }
  }

 private:
  void Report(std::int64_t offset, const char* where, std::string what) {
    if (!stopped) stopped = !report({offset, where, std::move(what)});
  }

  bool Read(void* bytes, std::size_t count, std::int64_t offset, const char* where);
  bool CheckSizes();
  bool CheckHeaderBlock();
  bool CheckCategories();
  void CheckSlots();
  void CheckSlot(const char* slot, std::int64_t offset);
  void CheckAppointment(const Appointment& record, std::int64_t offset);
  void CheckRepeat(const Appointment& record, std::int64_t offset);
  void CheckTail();
  void CheckBalance();
  void CheckIds();
  template <std::size_t kCount>
  void CheckTexts(const TextField (&fields)[kCount], const char* bytes, std::int64_t offset,
                  const char* where);

  const platform::File& file;
  const FindingReport& report;
  const std::int64_t size;
  const bool used;  // by others: locks and counts are then theirs
  bool stopped = false;
  bool sawAllSlots = true;
  FileHeader sizes{};
  HeaderBlock header{};
  const RecordKind* kind = nullptr;
  std::int64_t freeSlots = 0;
  std::vector<std::pair<std::uint64_t, std::int64_t>> ids;  // with the offsets of their slots
};

// ---- Before the slots ----

bool Checker::Read(void* bytes, std::size_t count, std::int64_t offset, const char* where) {
  if (size < offset + static_cast<std::int64_t>(count)) {
    Report(size, where, "the file ends in it, after " + Number(size) + " bytes");
    return false;
  }
  if (file.ReadAt(bytes, count, offset) == static_cast<std::int64_t>(count)) return true;
  Report(offset, where, "it cannot be read");
  return false;
}

bool Checker::CheckSizes() {
  if (!Read(&sizes, sizeof sizes, 0, kInFileHeader)) return false;
  const auto compare = [&](std::size_t offset, const char* name, std::uint32_t is, std::size_t expected) {
    if (is == expected) return;
    Report(static_cast<std::int64_t>(offset), kInFileHeader,
           std::string(name) + " is " + Number(is) + ", not " + std::to_string(expected));
  };
  compare(offsetof(FileHeader, headerBlockSize), "headerBlockSize", sizes.headerBlockSize,
          sizeof(HeaderBlock));
  compare(offsetof(FileHeader, categoryBlockSize), "categoryBlockSize", sizes.categoryBlockSize,
          sizeof(CategoryBlock));
  return true;
}

bool Checker::CheckHeaderBlock() {
  if (!Read(&header, sizeof header, kHeaderBlockOffset, kInHeaderBlock)) return false;
  kind = FindKind(header);
  if (kind == nullptr) {
    Report(kHeaderBlockOffset + std::int64_t{offsetof(HeaderBlock, kind)}, kInHeaderBlock,
           "it names no kind of file that is known");
    return false;
  }
  if (sizes.slotSize != kind->slotSize) {
    Report(offsetof(FileHeader, slotSize), kInFileHeader,
           "slotSize is " + Number(sizes.slotSize) + ", not " + Number(kind->slotSize));
  }
  CheckTexts(kHeaderTexts, reinterpret_cast<const char*>(&header), kHeaderBlockOffset, kInHeaderBlock);
  if (header.openCount != 0 && !used) {
    Report(kHeaderBlockOffset + std::int64_t{offsetof(HeaderBlock, openCount)}, kInHeaderBlock,
           "openCount is " + Number(header.openCount) + ", but nobody has the file open");
  }
  return true;
}

bool Checker::CheckCategories() {
  CategoryBlock block;
  if (!Read(&block, sizeof block, kCategoryBlockOffset, kInCategoryBlock)) return false;
  // An editor that holds more names than are kept stores the first of them and the count of all.
  const bool full = std::all_of(block.entries, block.entries + kShownCategories,
                                [](const CategoryEntry& entry) { return entry.name[0] != '\0'; });
  if (block.count > kCategoryEntries && !full) {
    Report(kCategoryBlockOffset + std::int64_t{offsetof(CategoryBlock, count)}, kInCategoryBlock,
           "count is " + Number(block.count) + ", but there is room for " + std::to_string(kCategoryEntries));
  }
  const std::size_t kept = std::min<std::size_t>(block.count, kCategoryEntries);
  for (std::size_t i = 0; i < kept; ++i) {
    const std::size_t at = offsetof(CategoryBlock, entries) + i * sizeof(CategoryEntry);
    const TextField name[] = {{"name", at, sizeof CategoryEntry::name}};
    CheckTexts(name, reinterpret_cast<const char*>(&block), kCategoryBlockOffset, kInCategoryBlock);
  }
  return true;
}

// Of the blocks each text is reported at its own place, of a record at that of its slot.
template <std::size_t kCount>
void Checker::CheckTexts(const TextField (&fields)[kCount], const char* bytes, std::int64_t offset,
                         const char* where) {
  for (const TextField& field : fields) {
    if (ReadText(bytes + field.offset, field.size).size() < field.size) continue;
    const std::int64_t at = where == kInSlot ? offset : offset + static_cast<std::int64_t>(field.offset);
    Report(at, where, std::string(field.name) + " has no terminator");
  }
}

// ---- Slots ----

void Checker::CheckSlots() {
  const std::int64_t slotSize = kind->slotSize;
  const std::int64_t slots = (size - kFirstSlotOffset) / slotSize;
  const std::int64_t addressable = (kOffsetsEnd - 1 - kFirstSlotOffset) / slotSize + 1;
  std::vector<char> buffer(kSlotsPerRead * kind->slotSize);
  for (std::int64_t slot = 0; slot < std::min(slots, addressable) && !stopped;) {
    const std::int64_t offset = kFirstSlotOffset + slot * slotSize;
    const auto count = std::min<std::int64_t>(kSlotsPerRead, std::min(slots, addressable) - slot);
    const std::int64_t read = file.ReadAt(buffer.data(), static_cast<std::size_t>(count * slotSize), offset);
    const std::int64_t whole = std::max<std::int64_t>(read, 0) / slotSize;
    for (std::int64_t i = 0; i < whole && !stopped; ++i) {
      CheckSlot(buffer.data() + i * slotSize, offset + i * slotSize);
    }
    if (whole < count) {
      sawAllSlots = false;
      Report(offset + whole * slotSize, kInSlot, Number(count - whole) + " slots cannot be read");
    }
    slot += count;
  }
  if (slots > addressable) {
    Report(kFirstSlotOffset + addressable * slotSize, kInSlot,
           Number(slots - addressable) + " slots lie beyond what an offset can name");
  }
}

void Checker::CheckSlot(const char* slot, std::int64_t offset) {
  RecordHeader record;
  std::memcpy(&record, slot, sizeof record);
  const auto checkByte = [&](const char* name, unsigned value) {
    if (value > 1) Report(offset, kInSlot, std::string(name) + " is " + Number(value) + ", neither 0 nor 1");
  };
  checkByte("inUse", record.inUse);
  if (record.inUse == 0) ++freeSlots;
  if (record.inUse != 1) return;  // what a free slot holds has no meaning
  if (record.recordSize != kind->slotSize) {
    Report(offset, kInSlot, "recordSize is " + Number(record.recordSize) + ", not " + Number(kind->slotSize));
  }
  checkByte("editLock", record.editLock);
  if (record.editLock == 1 && !used)
    Report(offset, kInSlot, "its edit lock is set, but nobody has the file open");
  checkByte("confidential", record.confidential);
  CheckTexts(kRecordTexts, slot, offset, kInSlot);
  const std::uint64_t id = record.recordId;              // packed fields take no references
  if (kind != &kSendKind) ids.emplace_back(id, offset);  // participants have none
  if (kind != &kCalendarKind) return;
  Appointment appointment;
  std::memcpy(&appointment, slot, sizeof appointment);
  CheckAppointment(appointment, offset);
}

void Checker::CheckAppointment(const Appointment& record, std::int64_t offset) {
  const auto checkDay = [&](const char* name, const Date& date) {
    if (StoredDayIndex(date) >= 0) return;
    Report(offset, kInSlot, std::string(name) + " is " + Spell(date) + ", no day of the calendar");
  };
  const auto checkTime = [&](const char* name, const TimeOfDay& value) {
    if (IsTimeOfDay(value)) return;
    Report(offset, kInSlot,
           std::string(name) + " is hour " + Number(value.hour) + ", minute " + Number(value.minute) +
               ", half " + Number(value.half) + ", no time of day");
  };
  CheckTexts(kAppointmentTexts, reinterpret_cast<const char*>(&record), offset, kInSlot);
  checkDay("date", record.date);
  checkTime("startTime", record.startTime);
  checkTime("endTime", record.endTime);
  if (record.alarmOn != 0) {
    checkDay("alarmDate", record.alarmDate);
    checkTime("alarmTime", record.alarmTime);
  }
  CheckRepeat(record, offset);
}

void Checker::CheckRepeat(const Appointment& record, std::int64_t offset) {
  const RepeatRule& rule = record.repeat;
  const auto wrong = [&](const std::string& what) { Report(offset, kInSlot, "repeat rule: " + what); };
  const std::uint32_t param = rule.repeatParam;
  switch (rule.repeatType) {
    case kRepeatNone: {
      const RepeatRule none{};
      if (std::memcmp(&rule, &none, sizeof none) != 0) wrong("repeatType is 0, but the rest is not");
      return;
    }
    case kRepeatDaily:
      break;
    case kRepeatWeekly:
      if (param == 0 || param > kWholeWeek) wrong("repeatParam " + Number(param) + " is no set of weekdays");
      break;
    case kRepeatMonthly:
      if (param < 1 || param > 31) wrong("repeatParam " + Number(param) + " is no day of a month");
      break;
    case kRepeatYearly:
      if (!IsValidDate(static_cast<int>(param & 0xFFFF), static_cast<int>(param >> 16), kSomeLeapYear)) {
        wrong("repeatParam " + Number(param) + " is no day of a year");
      }
      break;
    default:
      wrong("repeatType " + Number(rule.repeatType) + " is unknown");
      return;
  }
  if (rule.repeatEvery < 1 || rule.repeatEvery > kMostEvery) {
    wrong("repeatEvery is " + Number(rule.repeatEvery) + ", not 1 to " + Number(kMostEvery));
  }
  if (StoredDayIndex(rule.repeatEnd) < 0) {
    wrong("repeatEnd is " + Spell(rule.repeatEnd) + ", no day of the calendar");
  } else if (EndsBefore(rule, record.date)) {
    wrong("it ends before it begins");
  }
}

// ---- After the slots ----

void Checker::CheckTail() {
  const std::int64_t tail = (size - kFirstSlotOffset) % kind->slotSize;
  if (tail != 0) Report(size - tail, kAtEnd, Number(tail) + " bytes that are no whole slot");
}

void Checker::CheckBalance() {
  // Whoever changed the file while it was looked through changed the balance with it.
  HeaderBlock after;
  if (!sawAllSlots || stopped || !Read(&after, sizeof after, kHeaderBlockOffset, kInHeaderBlock)) return;
  if (after.changeCounter != header.changeCounter || after.freeSlotBalance == -freeSlots) return;
  Report(kHeaderBlockOffset + std::int64_t{offsetof(HeaderBlock, freeSlotBalance)}, kInHeaderBlock,
         "freeSlotBalance is " + Number(after.freeSlotBalance) + ", but " + Number(freeSlots) +
             " slots are free");
}

void Checker::CheckIds() {
  std::sort(ids.begin(), ids.end());
  for (std::size_t i = 1; i < ids.size() && !stopped; ++i) {
    if (ids[i].first != ids[i - 1].first) continue;
    Report(ids[i].second, kInSlot, "its recordId is also that of the record at " + Number(ids[i - 1].second));
  }
}

}  // namespace

OpenError CheckFile(const std::string& path, const FindingReport& report) {
  platform::File file;
  const OpenError opened = FromFileResult(file.OpenReadOnly(path));
  if (opened != OpenError::kNone) return opened;
  if (file.Size() < 0) return OpenError::kFailed;
  Checker(file, report).Run();
  return OpenError::kNone;
}

}  // namespace core
