// The commands that change the records of a calendar: add, edit, move, copy and delete. They take the edit
// lock, read, write and give back in the order of the window program, so that both may work on one file.
#include <memory>

#include "cli/appointment_options.h"
#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/values.h"
#include "core/calendar/appointment_commands.h"
#include "core/events/event_commands.h"
#include "core/store/file_messages.h"

namespace cli {
namespace {

using core::Appointment;
using core::CommandResult;

// What names one record on the command line.
struct Target {
  std::unique_ptr<core::RecordFile> file;
  core::RecordKey key;
  std::string notice;  // of the opening
};

Outcome FindTarget(const Arguments& arguments, Target& target) {
  Outcome outcome = ParseId(arguments.id, target.key.id);
  if (outcome.IsDone()) outcome = OpenCalendarToChange(arguments, target.file);
  if (!outcome.IsDone()) return outcome;
  target.notice = outcome.message;
  return FindRecord(arguments, *target.file, target.key);
}

Outcome CheckConfidential(const Arguments& arguments, const AppointmentOptions& options,
                          const core::RecordFile& file) {
  if (!options.confidential || file.AccessLevel() == core::Access::kOwner) return {};
  return FailOn(arguments.file, kRefused, "Only the Owner level says what is confidential.");
}

// Prints the id of a record that was added.
void TellId(CommandResult added, const Appointment& record, Output& output, Outcome& outcome) {
  if (!core::IsMade(added)) return;
  const std::string id = FormatId(record.header.recordId);
  output.Write(id + "\n");
  outcome.made = "The appointment was added; its id is " + id + ".";
}

// The record that move or copy names, and the day it goes to.
Outcome FindJourney(const Arguments& arguments, Target& target, core::Date& date) {
  if (!arguments.Has("to")) return Fail(kUsage, "--to is missing, which says the day to go to");
  Outcome outcome = ParseDate("to", arguments.Value("to"), date);
  return outcome.IsDone() ? FindTarget(arguments, target) : outcome;
}

}  // namespace

Outcome AddCommand(const Arguments& arguments, Output& output) {
  AppointmentOptions options;
  Outcome outcome = ParseAppointmentOptions(arguments, options);
  if (!outcome.IsDone()) return outcome;
  const bool allDay = options.allDay.value_or(false);
  if (!options.date || !options.subject || !(options.start || allDay)) {
    return Fail(kUsage, "add needs --date, --subject and --start or --all-day");
  }
  std::unique_ptr<core::RecordFile> file;
  outcome = OpenCalendarToChange(arguments, file);
  const std::string notice = outcome.message;
  if (outcome.IsDone()) outcome = CheckConfidential(arguments, options, *file);
  if (!outcome.IsDone()) return outcome;
  Appointment record;
  if (!core::NewAppointment(*file, record)) return DescribeChange(*file, CommandResult::kFailed);
  // Where nothing else is said: midnight for an all-day appointment, the start for the end.
  record.startTime = options.start.value_or(core::TimeOfDay{0, 0, 0, core::kBeforeNoon});
  record.endTime = record.startTime;
  outcome = ApplyOptions(options, record);
  if (!outcome.IsDone()) return outcome;
  const CommandResult added = core::AddAppointment(*file, record);
  outcome = DescribeChange(*file, added);
  if (outcome.IsDone()) outcome.message = notice;
  TellId(added, record, output, outcome);
  return outcome;
}

Outcome EditCommand(const Arguments& arguments) {
  AppointmentOptions options;
  Outcome outcome = ParseAppointmentOptions(arguments, options);
  if (!outcome.IsDone()) return outcome;
  if (options.IsEmpty()) return Fail(kUsage, "edit needs an option that says what to change");
  Target target;
  outcome = FindTarget(arguments, target);
  if (outcome.IsDone()) outcome = CheckConfidential(arguments, options, *target.file);
  if (!outcome.IsDone()) return outcome;
  core::EditLock lock(*target.file);
  Appointment record;
  CommandResult result = core::BeginEdit(lock, target.key, record);
  if (result != CommandResult::kDone) return DescribeChange(*target.file, result);
  outcome = ApplyOptions(options, record);
  if (outcome.IsDone()) result = core::EndEdit(lock, record);
  // The lock of an edit that was given up may be what is left to tell.
  const CommandResult released = lock.Release();
  if (released != CommandResult::kDone) result = released;
  if (result != CommandResult::kDone) outcome = DescribeChange(*target.file, result);
  return outcome.IsDone() ? Outcome{kDone, target.notice} : outcome;
}

Outcome MoveCommand(const Arguments& arguments) {
  Target target;
  core::Date date{};
  Outcome outcome = FindJourney(arguments, target, date);
  if (!outcome.IsDone()) return outcome;
  Appointment record;
  outcome = DescribeChange(*target.file, core::MoveToDate(*target.file, target.key, date, record));
  return outcome.IsDone() ? Outcome{kDone, target.notice} : outcome;
}

Outcome CopyCommand(const Arguments& arguments, Output& output) {
  Target target;
  core::Date date{};
  Outcome outcome = FindJourney(arguments, target, date);
  if (!outcome.IsDone()) return outcome;
  Appointment record;
  const CommandResult copied = core::CopyToDate(*target.file, target.key, date, record);
  outcome = DescribeChange(*target.file, copied);
  if (outcome.IsDone()) outcome.message = target.notice;
  TellId(copied, record, output, outcome);
  return outcome;
}

Outcome DeleteCommand(const Arguments& arguments) {
  Target target;
  Outcome outcome = FindTarget(arguments, target);
  if (!outcome.IsDone()) return outcome;
  core::EditLock lock(*target.file);
  Appointment record;
  core::EventOutcome deleted{lock.Take(target.key)};
  if (deleted.result == CommandResult::kDone) deleted.result = core::ReadLocked(lock, record);
  if (deleted.result == CommandResult::kDone) {
    // Nobody is to be invited any more to what is gone.
    deleted = IsInternetEvent(record) ? core::DeleteEvent(lock, false)
                                      : core::EventOutcome{core::DeleteLocked(lock, record)};
  }
  outcome = DescribeChange(*target.file, deleted.result);
  if (outcome.IsDone()) return {kDone, target.notice};
  return deleted.message.empty() ? outcome : FailOn(target.file->Path(), outcome.code, deleted.message);
}

}  // namespace cli
