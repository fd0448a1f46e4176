// Brings a plan into a calendar: what it has already stays, what is new is added, what changed in the file is
// changed.
//
//   IcalUpdate update;
//   CommandResult compared = CompareWithCalendar(file, std::move(plan), update);
//   ... show DescribeUpdate(update), ask ...
//   IcalUpdateResult result = ApplyUpdate(file, update, progress);
//
// A record is found again by its import mark: the event's UID and which piece of the event it is. One that
// was exported from here is found by its id. An event that was read before in this very state is left alone:
// what the user has changed here since stays changed, and a piece of it that he has deleted stays deleted. Of
// an event that is in another state every piece becomes what the file says, unless the calendar has a later
// state of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/exchange/exchange_fields.h"
#include "core/exchange/ical_plan.h"
#include "core/store/command_result.h"
#include "core/store/record_file.h"

namespace core {

// What becomes of a planned record, or of one that is there.
enum class IcalFate {
  kAdd,
  kChange,   // it is written anew; alarm tone, start target and its place stay
  kDelete,   // a piece of a changed event that the file no longer has
  kThere,    // stays as it is: this state of the event has been read before
  kOlder,    // stays: the calendar has a later state of the event
  kRemoved,  // is not added: the user has deleted this piece of the event
  kEvent,    // stays: it is an internet event by now, whose participants know it as it is
  kOwners,   // stays, or is not added: confidential, and the user is not the Owner
  kLocked,   // stays: somebody edits it, or has changed or deleted it since the comparison (ApplyUpdate)
};

// What happens to one planned record.
struct IcalStep {
  IcalFate fate = IcalFate::kAdd;
  RecordKey key{};         // of the record that is there; for kAdd the id that it gets, 0 for a new one
  std::uint64_t seen = 0;  // SeenHash of the record that is there, as it was compared
};

// What happens to a piece of a changed event that the file no longer has.
struct IcalLeftover {
  IcalFate fate = IcalFate::kDelete;  // or kEvent, kLocked
  RecordKey key{};
  std::uint64_t seen = 0;
  Date date{};
  std::string subject;  // in code page 1252
};

struct IcalUpdate {
  IcalPlan plan;
  std::vector<IcalStep> steps;          // one for each planned record, in their order
  std::vector<IcalLeftover> leftovers;  // in the calendar's order
  std::uint64_t counter = 0;            // the calendar's change counter when it was compared

  // How many records of plan and calendar have that fate.
  std::size_t Count(IcalFate fate) const;
};

// The hash of a record in all but its edit lock, which comes and goes with an editor that changes nothing.
std::uint64_t SeenHash(Appointment record);

// Compares, in one pass over the calendar. kReader, kNoAccess or kFailed, with no steps, when the calendar
// may not be changed or cannot be read to its end: what is not found would be added a second time.
[[nodiscard]] CommandResult CompareWithCalendar(const RecordFile& calendar, IcalPlan plan,
                                                IcalUpdate& update);

struct IcalUpdateResult {
  CommandResult result = CommandResult::kDone;  // unless IsMade, why the rest was not done
  bool cancelled = false;
  // What was done, however it ended.
  std::size_t added = 0;
  std::size_t changed = 0;
  std::size_t deleted = 0;
};

// Writes the update: additions, then changes, then deletions, some hundred records at a time under one guard,
// and one flush in the end. An event is added with all its pieces or not at all. When others have changed the
// calendar it is compared anew first; a record that they have changed since is left to them (kLocked), and
// the next import looks at it again. `progress` counts records; when it says no, what was done stays, and the
// next import does the rest.
[[nodiscard]] IcalUpdateResult ApplyUpdate(RecordFile& calendar, IcalUpdate& update,
                                           const ExchangeProgress& progress = {});

// What will be done, or what was done: sentences for the user, the remarks' reasons with their counts among
// them.
std::vector<std::string> DescribeUpdate(const IcalUpdate& update);
std::vector<std::string> DescribeUpdate(const IcalUpdate& update, const IcalUpdateResult& result);

// One remark or one record of an update.
struct IcalLine {
  std::string what;     // "added", "changed", ... or the remark; UTF-8
  Date date{};          // zero where it is not known
  std::string subject;  // UTF-8
};

// All of them: remarks first, then records in the plan's order, then what is deleted.
std::vector<IcalLine> ListUpdate(const IcalUpdate& update);

}  // namespace core
