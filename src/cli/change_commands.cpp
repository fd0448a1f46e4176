// The commands that change the records of a calendar: add, edit and delete. They take the edit lock, read,
// write and give back in the order of the window program, so that both may work on one file.
#include <memory>

#include "cli/appointment_options.h"
#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "cli/values.h"
#include "core/appointment_commands.h"

namespace cli {
namespace {

using core::Appointment;
using core::CommandResult;

Outcome Describe(const std::string& path, CommandResult result) {
  switch (result) {
    case CommandResult::kDone:
      return {};
    case CommandResult::kNotFlushed:
      return FailOn(
          path, kFile,
          "The change is made, but may be lost if the computer fails: the disk did not confirm it.");
    case CommandResult::kReader:
      return FailOn(path, kRefused, "The password allows to read only.");
    case CommandResult::kLocked:
      return FailOn(path, kLocked, "The record is being edited by another user.");
    case CommandResult::kVanished:
      return FailOn(path, kRefused, "The record was deleted by another user.");
    case CommandResult::kConfidential:
      return FailOn(path, kRefused, "The record is the owner's alone.");
    case CommandResult::kCancelledEvent:
      return FailOn(path, kRefused, "The record is an internet event that was cancelled.");
    case CommandResult::kRepeats:
    case CommandResult::kFailed:
      break;
  }
  return FailOn(path, kFile, "Reading or writing it failed.");
}

// What names one record on the command line.
struct Target {
  std::unique_ptr<core::RecordFile> file;
  std::uint64_t id = 0;
  std::int32_t offset = 0;
  std::string notice;  // of the opening
};

Outcome FindTarget(const Arguments& arguments, Target& target) {
  Outcome outcome = ParseId(arguments.id, target.id);
  if (outcome.IsDone()) outcome = OpenCalendarToChange(arguments, target.file);
  if (!outcome.IsDone()) return outcome;
  target.notice = outcome.message;
  return FindRecord(arguments, *target.file, target.id, target.offset);
}

// A lock that was refused because the record went away meanwhile is no lock of another user.
CommandResult ReasonOf(CommandResult result, const Target& target) {
  Appointment record;
  const bool gone = result == CommandResult::kLocked && !target.file->ReadRecord(&record, target.offset);
  return gone ? CommandResult::kVanished : result;
}

Outcome CheckConfidential(const Arguments& arguments, const AppointmentOptions& options,
                          const core::RecordFile& file) {
  if (!options.confidential || file.AccessLevel() == core::Access::kOwner) return {};
  return FailOn(arguments.file, kRefused, "Only the Owner level says what is confidential.");
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
  if (!core::NewAppointment(*file, record)) return Describe(arguments.file, CommandResult::kFailed);
  // Where nothing else is said: midnight for an all-day appointment, the start for the end.
  record.startTime = options.start.value_or(core::TimeOfDay{0, 0, 0, core::kBeforeNoon});
  record.endTime = record.startTime;
  outcome = ApplyOptions(options, record);
  if (!outcome.IsDone()) return outcome;
  const CommandResult added = core::AddAppointment(*file, record);
  const bool isThere = added == CommandResult::kDone || added == CommandResult::kNotFlushed;
  if (isThere) output.Write(FormatId(record.header.recordId) + "\n");
  outcome = Describe(arguments.file, added);
  return outcome.IsDone() ? Outcome{kDone, notice} : outcome;
}

Outcome EditCommand(const Arguments& arguments) {
  AppointmentOptions options;
  Outcome outcome = ParseAppointmentOptions(arguments, options);
  if (!outcome.IsDone()) return outcome;
  if (options.IsEmpty()) return Fail(kUsage, "edit is not told what to change");
  Target target;
  outcome = FindTarget(arguments, target);
  if (outcome.IsDone()) outcome = CheckConfidential(arguments, options, *target.file);
  if (!outcome.IsDone()) return outcome;
  core::EditLock lock(*target.file);
  Appointment record;
  CommandResult result = ReasonOf(core::BeginEdit(lock, target.offset, record), target);
  // Another record may have come into the slot since it was looked for.
  if (result == CommandResult::kDone && record.header.recordId != target.id)
    result = CommandResult::kVanished;
  if (result != CommandResult::kDone) return Describe(arguments.file, result);
  outcome = ApplyOptions(options, record);
  if (!outcome.IsDone()) return outcome;
  outcome = Describe(arguments.file, core::EndEdit(lock, record));
  return outcome.IsDone() ? Outcome{kDone, target.notice} : outcome;
}

Outcome DeleteCommand(const Arguments& arguments) {
  Target target;
  Outcome outcome = FindTarget(arguments, target);
  if (!outcome.IsDone()) return outcome;
  core::EditLock lock(*target.file);
  CommandResult result = ReasonOf(lock.Take(target.offset), target);
  Appointment record;
  if (result == CommandResult::kDone) result = lock.Read(record);
  if (result == CommandResult::kDone && record.header.recordId != target.id)
    result = CommandResult::kVanished;
  if (result == CommandResult::kDone) result = core::DeleteLocked(lock);
  outcome = Describe(arguments.file, result);
  return outcome.IsDone() ? Outcome{kDone, target.notice} : outcome;
}

}  // namespace cli
