#include "calendar/event_actions.h"

#include <optional>

#include "calendar/action_reports.h"
#include "core/calendar/appointment_commands.h"
#include "core/store/file_messages.h"
#include "resources/text_ids.h"

using core::CommandResult;
using core::EventOutcome;

namespace {

constexpr const char* kNotSaved = "The participants were not saved.";
constexpr const char* kNoMoreChanges = "This event can't be changed any more.";

// Whether what was chosen can still get into the calendar, after a try that failed.
bool MayTryAgain(CommandResult result) {
  return result == CommandResult::kFailed || result == CommandResult::kLocked ||
         result == CommandResult::kLockLeft;
}

// Stores what was chosen. The lock is given back; where it went with a try before, it is taken again.
EventOutcome Send(core::ParticipantList& list, core::EditLock& lock, core::Appointment& record, bool& waits) {
  EventOutcome sent;
  if (!lock.IsHeld()) sent.result = BeginEditAgain(lock, record);
  if (sent.result == CommandResult::kDone) {
    int answer = core::kEventSettled;
    sent = SendEvent(list, lock, record, answer);
    waits = waits || answer == core::kEventWaits;
  }
  // What was chosen is lost: not in silence.
  if (!IsMade(sent.result) && !MayTryAgain(sent.result) && sent.message.empty()) {
    const std::string reason = core::DescribeResult(lock.File(), sent.result);
    sent.message = reason.empty() ? kNoMoreChanges : reason;
  }
  return sent;
}

// Has the participants chosen and stores them, as often as the user tries: as long as that fails, what was
// chosen comes back, also over a calendar that has taken the place of the open one. The lock is given back.
EventOutcome ChooseAndSend(core::CalendarSession& session, ActionHost& host,
                           const core::RecordKey& selected) {
  std::optional<core::EditLock> lock(std::in_place, *session.File());
  core::Appointment record;
  const CommandResult begun = BeginEdit(*lock, selected, record);
  if (begun != CommandResult::kDone) return {begun};
  core::ParticipantList list;
  const std::string store = core::ParticipantStorePath(session.File()->Path());
  if (const CommandResult loaded = list.Load(store, record.header.recordId); loaded != CommandResult::kDone) {
    return {WorseOf(loaded, lock->Release()), list.Message()};
  }
  if (!list.Message().empty()) host.Tell(list.Message());
  bool waits = false;
  for (bool isUnsaved = false; host.ChooseParticipants(record, list, isUnsaved); isUnsaved = true) {
    if (!lock) lock.emplace(*session.File());
    EventOutcome sent = Send(list, *lock, record, waits);
    if (IsMade(sent.result) && waits) host.Tell(text::kPutOnEventsPanel);
    if (!MayTryAgain(sent.result) || host.IsEnding()) return sent;
    // In a file that is no longer at its path the lock protects nothing.
    if (sent.message.empty() && IsFileLost(lock->File(), sent.result)) lock.reset();
    if (lock) {
      Report(session, host, sent, kNotSaved);
    } else {
      ReportAndLook(session, host, sent, kNotSaved);
    }
  }
  return {lock ? lock->Release() : CommandResult::kDone};
}

}  // namespace

void InternetEventsCommand(core::CalendarSession& session, ActionHost& host,
                           const core::RecordKey& selected) {
  EventOutcome outcome;
  if (session.File() != nullptr) outcome.result = CheckMayChange(*session.File());
  if (session.File() == nullptr || (outcome.result == CommandResult::kDone && selected.IsNone())) {
    host.Beep();
    return;
  }
  if (outcome.result == CommandResult::kDone) outcome = ChooseAndSend(session, host, selected);
  ReportAndLook(session, host, outcome, kNotSaved);
  session.RecordsChanged();
}

bool NotifyOfChange(ActionHost& host, const core::RecordFile& file, core::Appointment& record) {
  if (!IsInternetEvent(record) || !host.Ask(text::kNotifyParticipants)) return true;
  const EventOutcome outcome = NotifyChanged(core::ParticipantStorePath(file.Path()), record);
  if (!IsMade(outcome.result)) {
    host.Tell(outcome.message + "\r\nThe appointment was not saved.");
  } else if (!outcome.message.empty()) {
    host.Tell(outcome.message);
  }
  return IsMade(outcome.result);
}

EventOutcome DeleteAndNotify(ActionHost& host, core::EditLock& lock, core::Appointment& record) {
  const CommandResult read = ReadLocked(lock, record);
  if (read != CommandResult::kDone) return {read};
  if (!IsInternetEvent(record)) return {DeleteLocked(lock, record)};
  return DeleteEvent(lock, host.Ask(text::kNotifyParticipants));
}
