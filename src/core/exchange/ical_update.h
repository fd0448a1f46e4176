// Brings a plan into a calendar: what it has already stays, what is new is added, what changed in the file is
// changed.
#pragma once

#include "core/exchange/exchange_fields.h"
#include "core/exchange/ical_plan.h"
#include "core/store/command_result.h"
#include "core/store/record_file.h"

namespace core {

enum class IcalFate {
  kAdd,
  kChange,  // the record of this piece is written anew; alarm tone, start target and its place stay
  kThere,   // left as it is: this state of the event has been read before
  kOlder,   // left as it is: the calendar has a later state of the event
  kLocked,  // found by ApplyUpdate: somebody edits it
};

struct IcalStep {
  std::size_t planned;  // index in plan.records
  IcalFate fate;
  RecordKey key{};  // of the record that is there; of kAdd nothing
};

struct IcalUpdate {
  IcalPlan plan;
  std::vector<IcalStep> steps;       // one for each planned record
  std::vector<RecordKey> leftovers;  // pieces of changed events that the file no longer has: deleted
  std::size_t Count(IcalFate fate) const;
};

// One pass over the calendar.
[[nodiscard]] CommandResult CompareWithCalendar(const RecordFile& calendar, IcalPlan plan,
                                                IcalUpdate& update);

struct IcalUpdateResult {
  CommandResult result = CommandResult::kDone;
  bool cancelled = false;
  std::size_t added = 0, changed = 0, deleted = 0, locked = 0;  // what was done, however it ended
};

// Writes the update: some hundred records at a time under one guard, one flush in the end. Records that
// another user has changed or deleted since the comparison are compared anew, never overwritten unseen.
[[nodiscard]] IcalUpdateResult ApplyUpdate(RecordFile& calendar, IcalUpdate& update,
                                           const ExchangeProgress& progress = {});

// What was done, or (dryRun) would be, and each reason with its count: lines for the user.
std::string DescribeUpdate(const IcalUpdate& update, const IcalUpdateResult& result, bool dryRun);
// One line for each remark and step: fate or reason, date, subject. For --verbose and the plan's list.
std::vector<std::string> ListUpdate(const IcalUpdate& update);

}  // namespace core
