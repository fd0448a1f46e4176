// Opening, listing, sorting and changing a calendar of any bytes: what is opened can be worked on, and no
// record that is listed is cut, free or not to be seen.
#include <cstring>

#include "core/calendar/appointment.h"
#include "core/calendar/calendar_file.h"
#include "core/calendar/categories.h"
#include "core/calendar/repeat_rule.h"
#include "core/store/record_query.h"
#include "fuzz_file.h"

namespace {

using core::Appointment;
using core::RecordQuery;

constexpr core::Date kDay{14, 3, 2004};

void ListAll(core::RecordFile& file) {
  RecordQuery query;
  query.AddMatchAll();
  FuzzCheck(query.Run(file) && query.Sort(file, core::kListOrder));
  const bool owner = file.AccessLevel() == core::Access::kOwner;
  for (const core::RecordKey& key : query.Keys()) {
    Appointment record;
    FuzzCheck(file.ReadRecord(&record, key) && record.header.inUse == 1);
    FuzzCheck(owner || record.header.confidential != 1);
  }
}

void ListDayAndTexts(core::RecordFile& file) {
  RecordQuery day;
  day.AddCallbackCondition(0, &kDay, sizeof kDay, core::OccursOnDate, core::Connector::kAnd);
  day.AddTextCondition(offsetof(core::RecordHeader, category), 30, core::ConditionOp::kNotEqual, "Calls",
                       core::Connector::kAnd);
  FuzzCheck(day.Run(file) && day.Sort(file, core::kDayOrder));
  RecordQuery found;
  found.AddTextCondition(offsetof(Appointment, subject), 150, core::ConditionOp::kContains, "e",
                         core::Connector::kOr);
  found.AddTextCondition(offsetof(Appointment, notes), 1024, core::ConditionOp::kNotEndsWith, "e",
                         core::Connector::kOr);
  FuzzCheck(found.Run(file) && found.Sort(file, core::kDateTimeOrder));
}

void ReadCategoryNames(core::RecordFile& file) {
  core::CategoryList list;
  FuzzCheck(core::ReadCategories(file, list) && list.names.size() <= core::kCategoryEntries);
  for (const std::string& name : list.names) FuzzCheck(name.size() <= sizeof(core::CategoryEntry::name));
  const core::CategoryBlock block = core::CategoriesFromNames(list.names);
  FuzzCheck(file.WriteCategoryBlock(block) != core::Result::kFailed);
}

void Change(core::RecordFile& file) {
  Appointment record{};
  FuzzCheck(file.InitRecord(&record));
  // Refused for a Reader, and without a place where the balance tells of free slots that are not there.
  if (file.AddRecord(&record) != core::Result::kDone) return;
  RecordQuery query;
  query.AddMatchAll();
  FuzzCheck(query.Run(file) && query.Count() > 0);
  const core::RecordKey key = query.KeyAt(0);
  if (!file.LockRecord(key)) return;
  FuzzCheck(file.ReadRecord(&record, key) && file.WriteRecord(&record, key) == core::Result::kDone);
  FuzzCheck(file.DeleteRecord(key) == core::Result::kDone && file.UnlockRecord(key));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const MemoryFile bytes(data, size);
  core::RecordFile file(FuzzPath(), "");
  if (file.OpenFailed() || file.SlotSize() != sizeof(Appointment)) return 0;
  if (file.AccessLevel() == core::Access::kNone) return 0;  // it shows nothing
  ListAll(file);
  ListDayAndTexts(file);
  ReadCategoryNames(file);
  Change(file);
  return 0;
}
