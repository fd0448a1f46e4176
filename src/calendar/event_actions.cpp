#include "calendar/event_actions.h"

#include <algorithm>
#include <array>

#include "calendar/action_reports.h"
#include "core/calendar/appointment_commands.h"
#include "resources/text_ids.h"

using core::CommandResult;
using core::EventOutcome;

namespace {

constexpr const char* kNotSaved = "The participants were not saved.";

// What failed in a store, or in the calendar.
void Tell(const core::CalendarSession& session, ActionHost& host, const EventOutcome& failure) {
  if (failure.message.empty()) {
    Report(session, host, failure.result, kNotSaved);
  } else {
    host.Tell(failure.message + "\r\n" + kNotSaved);
  }
}

// Has the participants chosen and stores them, as often as the user tries: as long as that fails, what was
// chosen comes back. The lock is given back.
EventOutcome ChooseAndSend(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected,
                           core::EditLock& lock) {
  core::Appointment record;
  const CommandResult begun = BeginEdit(lock, selected, record);
  if (begun != CommandResult::kDone) return {begun};
  core::ParticipantList list;
  const std::string store = core::ParticipantStorePath(lock.File().Path());
  if (const CommandResult loaded = list.Load(store, record.header.recordId); loaded != CommandResult::kDone) {
    return {WorseOf(loaded, lock.Release()), list.Message()};
  }
  if (!list.Message().empty()) host.Tell(list.Message());
  bool waits = false;
  while (host.ChooseParticipants(record, list)) {
    int answer = core::kEventSettled;
    const auto subject = std::to_array(record.header.eventSubject);
    EventOutcome sent = SendEvent(list, lock, record, answer);
    waits = waits || answer == core::kEventWaits;
    if (IsMade(sent.result) && waits) host.Tell(text::kPutOnEventsPanel);
    const bool lost = sent.message.empty() && IsFileLost(lock.File(), sent.result);
    if (IsMade(sent.result) || lost || host.IsEnding()) return sent;
    Tell(session, host, sent);
    // Somebody else may have had the record meanwhile.
    const CommandResult again = BeginEdit(lock, selected, record);
    if (again != CommandResult::kDone) return {again};
    std::copy(subject.begin(), subject.end(), record.header.eventSubject);
  }
  return {lock.Release()};
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
  if (outcome.result == CommandResult::kDone) {
    core::EditLock lock(*session.File());
    outcome = ChooseAndSend(session, host, selected, lock);
  }
  ReportAndLook(session, host, outcome, kNotSaved);
  session.RecordsChanged();
}

bool NotifyOfChange(ActionHost& host, const core::RecordFile& file, core::Appointment& record) {
  if (!IsInternetEvent(record) || !host.Ask(text::kNotifyParticipants)) return true;
  const EventOutcome outcome = NotifyChanged(core::ParticipantStorePath(file.Path()), record);
  const bool made = IsMade(outcome.result);
  if (!outcome.message.empty())
    host.Tell(made ? outcome.message : outcome.message + "\r\nThe appointment was not saved.");
  return made;
}

EventOutcome DeleteAndNotify(ActionHost& host, core::EditLock& lock, core::Appointment& record) {
  const CommandResult read = ReadLocked(lock, record);
  if (read != CommandResult::kDone) return {read};
  if (!IsInternetEvent(record)) return {DeleteLocked(lock, record)};
  return DeleteEvent(lock, host.Ask(text::kNotifyParticipants));
}
