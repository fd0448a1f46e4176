#include "store/store_operations.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

#include "core/calendar/calendar_file.h"
#include "core/store/compaction.h"
#include "core/store/record_query.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

using core::Appointment;
using core::RecordFile;
using core::Result;

constexpr std::int32_t kFirst = core::kFirstSlotOffset;
constexpr std::int32_t kSlot = sizeof(Appointment);

// Notes that a record with this subject has throughout, so that a record of two halves shows.
std::string NotesOf(const std::string& subject) {
  return std::string(900, subject.front()) + subject;
}

Entry Record(const std::string& subject) {
  return Entry(subject).On(14, 3, 2004).Notes(NotesOf(subject));
}

void MakeCalendar(const std::string& path) {
  core::HeaderBlock header;
  core::InitHeaderBlock(header, "Calendar", "Organizer", 1);
  RecordFile file(path, "");
  bool made = file.Create(header, core::DefaultCategories(), kSlot);
  for (const char* subject : {"a", "b", "c", "d"}) {
    const Entry entry = Record(subject);
    made = made && file.AddRecord(&entry.appointment) == Result::kDone;
  }
  made = made && file.DeleteRecord(kFirst + 2 * kSlot) == Result::kDone && file.LockRecord(kFirst);
  core::SetRefreshEnabled(true);
  made = made && file.UpdateHeaderBlock([](core::HeaderBlock& block) { block.openCount = 3; });
  if (!made) std::abort();
}

// An operation on the open calendar.
std::function<bool(const StoreFiles&)> OnOpen(std::function<bool(RecordFile&)> run) {
  return [run = std::move(run)](const StoreFiles& files) {
    RecordFile file(files.Path(), "");
    return !file.OpenFailed() && run(file);
  };
}

bool Add(RecordFile& file, const char* subject) {
  const Entry entry = Record(subject);
  return file.AddRecord(&entry.appointment) == Result::kDone && file.Flush();
}

bool Edit(RecordFile& file) {
  constexpr std::int32_t kB = kFirst + kSlot;
  Appointment record;
  if (!file.LockRecord(kB) || !file.ReadRecord(&record, kB)) return false;
  core::WriteText(record.subject, "e");
  core::WriteText(record.notes, NotesOf("e"));
  const bool written = file.WriteRecord(&record, kB) == Result::kDone;
  return file.UnlockRecord(kB) && written && file.Flush();
}

bool Delete(RecordFile& file) {
  constexpr std::int32_t kD = kFirst + 3 * kSlot;
  const bool deleted = file.LockRecord(kD) && file.DeleteRecord(kD) == Result::kDone;
  return file.UnlockRecord(kD) && deleted && file.Flush();
}

bool SetPasswords(RecordFile& file) {
  const auto change = [](core::HeaderBlock& header) { core::WriteText(header.assistantPassword, "two"); };
  return file.UpdateHeaderBlock(change) && file.Flush();
}

bool SetCategories(RecordFile& file) {
  return file.WriteCategoryBlock(core::CategoriesFromNames({"One", "Two"})) == Result::kDone && file.Flush();
}

bool OpenWithRepair(const StoreFiles& files) {
  return core::OpenCalendarFile(files.Path(), "", false).file != nullptr;
}

// Makes other.cld with one record.
bool Make(const StoreFiles& files, const char* subject, bool inPlace) {
  core::HeaderBlock header;
  core::InitHeaderBlock(header, "Calendar", "Organizer", 1);
  const Entry first = Record(subject);
  const std::string_view slots(reinterpret_cast<const char*>(&first.appointment), sizeof first.appointment);
  if (inPlace)
    return RecordFile(files.OtherPath(), "").Create(header, core::DefaultCategories(), kSlot, slots);
  const std::string image = core::NewFileImage(header, core::DefaultCategories(), kSlot, slots);
  return platform::WriteNewFile(files.OtherPath(), image.data(), image.size()) == platform::FileResult::kDone;
}

bool MakeNew(const StoreFiles& files) {
  return Make(files, "n", false);
}

bool MakeInPlace(const StoreFiles& files) {
  return Make(files, "p", true);
}

bool SaveAs(const StoreFiles& files) {
  RecordFile file(files.Path(), "");
  return !file.OpenFailed() && core::SaveCopy(file, files.OtherPath()).clean;
}

}  // namespace

StoreFiles::StoreFiles() {
  MakeCalendar(Path());
}

const std::vector<StoreOperation>& StoreOperations() {
  static const Records kOld = {"a", "b", "d"};
  static const Records kNone = {"(none)"};
  static const std::vector<StoreOperation> operations = {
      {"OpenAndClose", OnOpen([](RecordFile&) { return true; }), {kOld}, {kNone}},
      {"AddIntoAFreeSlot",
       OnOpen([](RecordFile& file) { return Add(file, "n"); }),
       {kOld, {"a", "b", "d", "n"}},
       {kNone}},
      {"AddAtTheEnd",
       OnOpen([](RecordFile& file) { return Add(file, "n") && Add(file, "o"); }),
       {kOld, {"a", "b", "d", "n"}, {"a", "b", "d", "n", "o"}},
       {kNone}},
      {"Edit", OnOpen(Edit), {kOld, {"a", "d", "e"}}, {kNone}},
      {"Delete", OnOpen(Delete), {kOld, {"a", "b"}}, {kNone}},
      {"SetPasswords", OnOpen(SetPasswords), {kOld}, {kNone}},
      {"SetCategories", OnOpen(SetCategories), {kOld}, {kNone}},
      {"Compact",
       [](const StoreFiles& files) { return core::RepairCheck(files.Path(), true).clean; },
       {kOld},
       {kNone}},
      {"OpenWithRepair", OpenWithRepair, {kOld}, {kNone}},
      {"SaveACopy", SaveAs, {kOld}, {kNone, kOld}},
      {"SaveACopyOverAFile",
       [](const StoreFiles& files) { return MakeNew(files) && SaveAs(files); },
       {kOld},
       {kNone, {"n"}, kOld}},
      {"MakeANewFile", MakeNew, {kOld}, {kNone, {"n"}}},
      {"MakeAFileInPlaceOfAnother",
       [](const StoreFiles& files) { return MakeNew(files) && MakeInPlace(files); },
       {kOld},
       {kNone, {"n"}, {"p"}}},
  };
  return operations;
}

Records RecordsAt(const std::string& path) {
  if (!platform::FileExists(path)) return {"(none)"};
  RecordFile file(path, "");
  if (file.OpenFailed()) return {"(unreadable)"};
  Records records;
  ForEachRecord(file, [&records](const void* slot) {
    Appointment record;
    std::memcpy(&record, slot, sizeof record);
    const std::string subject(core::ReadText(record.subject));
    const bool whole = !subject.empty() && core::ReadText(record.notes) == NotesOf(subject);
    records.push_back(whole ? subject : subject + " (damaged)");
    return true;
  });
  std::sort(records.begin(), records.end());
  return records;
}

std::string Disorder(const std::string& path) {
  RecordFile file(path, "");
  core::HeaderBlock header;
  if (file.OpenFailed() || !file.ReadHeaderBlock(header)) return "unreadable";
  int freeSlots = 0;
  std::string disorder;
  for (std::int64_t offset = kFirst; offset < file.SlotsEnd(); offset += kSlot) {
    Appointment record;
    if (!file.ReadSlot(&record, static_cast<std::int32_t>(offset))) return "unreadable slot";
    if (record.header.inUse != 1) ++freeSlots;
    if (record.header.inUse == 1 && record.header.editLock != 0) disorder += "lock left; ";
  }
  if (header.freeSlotBalance != -freeSlots) {
    disorder += "balance " + std::to_string(header.freeSlotBalance) + " with " + std::to_string(freeSlots) +
                " free slots; ";
  }
  if (header.openCount != 1) disorder += "open count " + std::to_string(header.openCount) + "; ";
  return disorder;
}

}  // namespace tests
