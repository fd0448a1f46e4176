#include "calendar/appointment_actions.h"

#include <optional>

#include "calendar/action_reports.h"
#include "calendar/event_actions.h"
#include "core/calendar/appointment_commands.h"
#include "core/store/file_messages.h"
#include "resources/text_ids.h"
#include "shell/commands.h"

using core::CommandResult;

namespace {

constexpr const char* kNotSaved = "The appointment was not saved.";
constexpr const char* kNotChanged = "Nothing was changed.";
constexpr const char* kNotCopied = "Nothing was copied.";
constexpr const char* kNotOpened = "Nothing was opened.";
constexpr const char* kOnNoDay =
    "The date of this appointment is none of the calendar's, so that no day shows it.";

// Runs the editor until its record is stored (true) or the user gives up: as long as it is in no file, what
// was typed comes back. The lock is the one under which the record was read. In a file that is no longer at
// its path it protects nothing; the record is then looked for in the one that is open by now.
bool EditAndStore(core::CalendarSession& session, ActionHost& host, std::optional<core::EditLock>& lock,
                  core::Appointment& record) {
  while (host.EditRecord(record, false)) {
    if (!NotifyOfChange(host, *session.File(), record)) {
      if (host.IsEnding()) break;
      continue;
    }
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

// Deletes a record, which is then in the bin, after a question if there is one (a text's number). What came
// of it, kDone also for No; `deleted` only when it is gone, or stays as a cancelled event.
core::EventOutcome Delete(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected,
                          std::optional<int> question, bool& deleted) {
  deleted = false;
  core::EditLock lock(*session.File());
  const CommandResult taken = lock.Take(selected);
  if (taken != CommandResult::kDone) return {taken};
  if (question && !host.Ask(*question)) return {lock.Release()};
  core::Appointment record;
  core::EventOutcome outcome = DeleteAndNotify(host, lock, record);
  deleted = IsMade(outcome.result);
  if (deleted) session.PutInBin(record);
  return outcome;
}

// Adds a record that comes from no list, and shows it: true when it is in the file.
bool FinishAdding(core::CalendarSession& session, ActionHost& host, CommandResult result) {
  if (IsMade(result)) {
    host.Play("add.wav");
    session.RecordsChanged();
  }
  ReportAndLook(session, host, result, kNotSaved);
  return IsMade(result);
}

// Shows the day of a record with the record selected. A damaged file, or one of the other era, may hold one
// that is on no day.
void ShowRecord(core::CalendarSession& session, ActionHost& host, const core::Appointment& record) {
  if (core::DayIndex(record.date) < 0) {
    host.Tell(kOnNoDay);
    return;
  }
  session.SetDate(record.date);
  host.SelectRecord(record);
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
  if (!MayBegin(session, host, selected)) return;
  bool deleted = false;
  const core::EventOutcome outcome = Delete(session, host, selected, text::kDeleteAppointment, deleted);
  if (deleted) host.Play("bindel.wav");
  ReportAndLook(session, host, outcome, kNotChanged);
  session.RecordsChanged();
}

bool DropOnBinCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected) {
  if (session.File() != nullptr && selected.IsNone()) host.Beep();
  if (!MayBegin(session, host, selected)) return false;
  bool deleted = false;
  const core::EventOutcome outcome = Delete(session, host, selected, std::nullopt, deleted);
  ReportAndLook(session, host, outcome, kNotChanged);
  session.RecordsChanged();
  return deleted;
}

void CutCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected) {
  if (!MayBegin(session, host, selected)) return;
  core::Appointment record;
  const CommandResult result = CutAppointment(*session.File(), selected, record);
  if (IsMade(result)) {
    session.PutInBin(record);
    session.PutOnClipboard(record, ID_CUT);
    host.Play("delete.wav");
  }
  if (result != CommandResult::kLocked) ReportAndLook(session, host, result, kNotChanged);
  session.RecordsChanged();
}

void CopyCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected) {
  if (!MayBegin(session, host, selected)) return;
  core::Appointment record;
  const CommandResult result = CopyAppointment(*session.File(), selected, record);
  // A lock that stays behind is told, and the record was read all the same.
  if (result == CommandResult::kDone || result == CommandResult::kLockLeft) {
    session.PutOnClipboard(record, ID_COPY);
    host.Play("copy.wav");
  }
  if (result != CommandResult::kLocked) ReportAndLook(session, host, result, kNotCopied);
  // The list shows what it held when a record that is gone was still there.
  if (result == CommandResult::kVanished) session.RecordsChanged();
}

void PasteCommand(core::CalendarSession& session, ActionHost& host) {
  core::Appointment record;
  if (session.File() == nullptr || !session.Clipboard().Read(&record, sizeof record)) return;
  const CommandResult result = PasteAppointment(*session.File(), session.CurrentDate(), record);
  if (FinishAdding(session, host, result)) host.SelectRecord(record);
}

void UndoDeleteCommand(core::CalendarSession& session, ActionHost& host) {
  core::Appointment record;
  if (session.File() == nullptr || !session.Bin().Read(&record, sizeof record)) return;
  const CommandResult result = RestoreAppointment(*session.File(), record);
  // Emptied before anything is told: a notice runs the message loop, in which the bin would still look full.
  if (IsMade(result)) session.EmptyBin();
  if (!FinishAdding(session, host, result)) return;
  if (core::IsSameDate(record.date, session.CurrentDate())) {
    host.SelectRecord(record);
  } else {
    ShowRecord(session, host, record);
  }
}

void GoToCommand(core::CalendarSession& session, ActionHost& host, const core::Appointment& record) {
  if (session.File() != nullptr) ShowRecord(session, host, record);
}

bool ReadSelected(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected,
                  core::Appointment& record) {
  if (session.File() == nullptr || selected.IsNone()) return false;
  if (session.File()->ReadRecord(&record, selected)) return true;
  ReportAndLook(session, host, FromFile(*session.File(), core::Result::kFailed), kNotOpened);
  // A list that was made before the record went shows so by now.
  session.RecordsChanged();
  return false;
}

void OpenAttachmentCommand(core::CalendarSession& session, ActionHost& host,
                           const core::RecordKey& selected) {
  if (!MayBegin(session, host, selected)) return;
  core::Appointment record;
  if (ReadSelected(session, host, selected, record) && HasAttachment(record)) {
    host.OpenTarget(std::string(core::ReadText(record.attachment)));
  }
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
