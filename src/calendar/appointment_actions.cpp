#include "calendar/appointment_actions.h"

#include <optional>

#include "core/calendar/appointment_commands.h"
#include "core/store/file_messages.h"
#include "resources/text_ids.h"

using core::CommandResult;

namespace {

constexpr const char* kNotSaved = "The appointment was not saved.";
constexpr const char* kNotChanged = "Nothing was changed.";

// Tells the user what came of a command; a silent result is silent. `failed` is added to what failed.
void Report(const core::CalendarSession& session, ActionHost& host, CommandResult result,
            const char* failed) {
  if (result == CommandResult::kCancelledEvent) host.Beep();
  std::string message = core::DescribeResult(*session.File(), result);
  if (result == CommandResult::kFailed) message.append("\r\n").append(failed);
  if (!message.empty()) host.Tell(message);
}

// The same for a command that holds no edit lock any more: when it failed because the file is no longer the
// one at its path, that one is opened now.
void ReportAndLook(core::CalendarSession& session, ActionHost& host, CommandResult result,
                   const char* failed) {
  const std::string news = result == CommandResult::kFailed ? session.LookAfterFile() : "";
  if (news.empty()) {
    Report(session, host, result, failed);
  } else {
    host.Tell(news + "\r\n" + failed);
  }
}

bool IsFileLost(const core::RecordFile& file, CommandResult result) {
  return result == CommandResult::kFailed &&
         (file.LastFault() == core::FileFault::kReplaced || file.LastFault() == core::FileFault::kGone);
}

// Runs the editor until its record is stored (true) or the user gives up: as long as it is in no file, what
// was typed comes back. The lock is the one under which the record was read. In a file that is no longer at
// its path it protects nothing; the record is then looked for in the one that is open by now.
bool EditAndStore(core::CalendarSession& session, ActionHost& host, std::optional<core::EditLock>& lock,
                  core::Appointment& record) {
  while (host.EditRecord(record, false)) {
    const CommandResult result = lock ? EndEdit(*lock, record) : PutAppointment(*session.File(), record);
    if (IsFileLost(*session.File(), result)) lock.reset();
    if (lock) {
      Report(session, host, result, kNotSaved);
    } else {
      ReportAndLook(session, host, result, kNotSaved);
    }
    if (IsMade(result)) return true;
    if (result == CommandResult::kConfidential || host.IsEnding()) break;
  }
  return false;
}

// Deletes the record after a question: what came of it, kDone also for No.
CommandResult AskAndDelete(core::CalendarSession& session, ActionHost& host,
                           const core::RecordKey& selected) {
  core::EditLock lock(*session.File());
  const CommandResult taken = lock.Take(selected);
  if (taken != CommandResult::kDone) return taken;
  if (!host.Ask(text::kDeleteAppointment)) return lock.Release();
  const CommandResult result = DeleteLocked(lock);
  if (IsMade(result)) host.Play("bindel.wav");
  return result;
}

}  // namespace

void NewCommand(core::CalendarSession& session, ActionHost& host) {
  if (session.File() == nullptr) {
    host.Beep();
    return;
  }
  CommandResult result = CheckMayChange(*session.File());
  core::Appointment record;
  // A file that cannot be read takes no appointment: better told now than after the typing.
  if (result == CommandResult::kDone && !NewAppointment(*session.File(), record)) {
    result = CommandResult::kFailed;
  }
  if (result != CommandResult::kDone) {
    ReportAndLook(session, host, result, kNotSaved);
    return;
  }
  for (bool isNew = true; host.EditRecord(record, isNew); isNew = false) {
    result = AddAppointment(*session.File(), record);
    if (IsMade(result)) {
      host.Play("add.wav");
      session.RecordsChanged();
      host.SelectRecord(record);
    }
    ReportAndLook(session, host, result, kNotSaved);
    // What the user typed comes back, to be saved when there is room again.
    if (IsMade(result) || host.IsEnding()) return;
  }
}

void EditCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected) {
  if (session.File() == nullptr) return;
  CommandResult result = CheckMayChange(*session.File());
  if (result == CommandResult::kDone && selected.IsNone()) return;
  core::Appointment record;
  {
    std::optional<core::EditLock> lock(std::in_place, *session.File());
    if (result == CommandResult::kDone) result = BeginEdit(*lock, selected, record);
    if (result == CommandResult::kDone) {
      if (EditAndStore(session, host, lock, record)) host.Play("add.wav");
      if (lock) Report(session, host, lock->Release(), kNotChanged);
    }
  }
  if (result != CommandResult::kDone) ReportAndLook(session, host, result, kNotChanged);
  session.RecordsChanged();
  if (result == CommandResult::kDone) host.SelectRecord(record);
}

void DeleteCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected) {
  if (session.File() == nullptr) return;
  CommandResult result = CheckMayChange(*session.File());
  if (result == CommandResult::kDone && selected.IsNone()) return;
  if (result == CommandResult::kDone) result = AskAndDelete(session, host, selected);
  ReportAndLook(session, host, result, kNotChanged);
  session.RecordsChanged();
}

void DropCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected, bool copy,
                 core::Date date) {
  if (session.File() == nullptr) return;
  if (selected.IsNone()) {
    host.Beep();
    return;
  }
  core::Appointment record;
  const CommandResult result = copy ? CopyToDate(*session.File(), selected, date, record)
                                    : MoveToDate(*session.File(), selected, date, record);
  if (IsMade(result)) {
    host.Play(copy ? "add.wav" : "move.wav");
    session.SetDate(date);
    host.SelectRecord(record);
  } else {
    session.RecordsChanged();
  }
  ReportAndLook(session, host, result, kNotChanged);
}
