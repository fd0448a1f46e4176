#include "core/events/event_commands.h"

#include "core/calendar/appointment_commands.h"
#include "core/store/companion_file.h"
#include "core/store/file_messages.h"
#include "platform/system/file.h"

namespace core {
namespace {

EventOutcome GiveUp(EditLock& lock, EventOutcome outcome) {
  const CommandResult released = lock.Release();
  if (released != CommandResult::kDone) outcome.result = released;
  return outcome;
}

// Changes the participants of an event. Where there is no store there are none.
EventOutcome Change(const std::string& storePath, std::uint64_t eventId,
                    const std::function<bool(Participant&)>& change, bool& allDeleted) {
  allDeleted = true;
  if (!platform::FileExists(storePath)) return {};
  const CompanionFile opened = OpenCompanion(storePath, kSendKind);
  if (opened.file == nullptr) return {CommandResult::kFailed, opened.message};
  const ParticipantChanges changes = ChangeParticipants(*opened.file, eventId, change);
  allDeleted = changes.deleted == changes.met;
  const std::string text = DescribeResult(*opened.file, changes.result);
  return {changes.result, text.empty() ? opened.message : text};
}

}  // namespace

int DecideEvent(const ParticipantList& list, Appointment& record) {
  std::uint8_t& state = record.header.eventFlag;
  const bool anybody = list.InUseCount() != 0;
  if (state == kNoEvent) {
    if (!anybody) return kEventSettled;
    state = kInternetEvent;
    return kEventWaits;
  }
  if (state != kInternetEvent && list.SomebodyWaits()) {
    state = kInternetEvent;
    return kEventWaits;
  }
  if (!anybody) state = kNoEvent;
  return kEventSettled;
}

EventOutcome SendEvent(ParticipantList& list, EditLock& lock, Appointment& record, int& answer) {
  const bool wasPlain = record.header.eventFlag == kNoEvent;
  answer = DecideEvent(list, record);
  const bool isPlain = record.header.eventFlag == kNoEvent;
  const auto save = [&list]() -> EventOutcome {
    int stored = 0;
    const CommandResult saved = list.Save(stored);
    return {saved, list.Message()};
  };
  EventOutcome outcome;
  if (isPlain && !wasPlain) outcome = save();
  if (!IsMade(outcome.result)) return GiveUp(lock, outcome);
  outcome.result = WorseOf(outcome.result, lock.Write(&record));
  if (!IsMade(outcome.result)) return GiveUp(lock, outcome);
  outcome.result = lock.Finish(outcome.result);
  if (isPlain) return outcome;
  const EventOutcome saved = save();
  return {WorseOf(outcome.result, saved.result), saved.message};
}

EventOutcome UpdateParticipants(const std::string& storePath, Appointment& record, UpdateMode mode) {
  if (record.header.eventFlag == kNoEvent) return {};
  const bool changed = mode == UpdateMode::kChanged;
  const bool unsent = record.header.eventRole == kSendNew;
  bool allDeleted = false;
  EventOutcome outcome = Change(
      storePath, record.header.recordId,
      [&](Participant& participant) {
        const bool knowsNothing = participant.state == kWaitForSend && unsent;
        participant.state = changed ? kWaitForSend : kCancelled;
        return changed || !knowsNothing;
      },
      allDeleted);
  if (!IsMade(outcome.result)) return outcome;
  record.header.eventFlag = changed ? kInternetEvent : kCancelledEvent;
  record.header.eventRole = changed ? kSendChanged : kSendCancelled;
  if (!changed && allDeleted) record.header.inUse = 0;
  return outcome;
}

EventOutcome NotifyChanged(const std::string& storePath, Appointment& record) {
  return UpdateParticipants(storePath, record, UpdateMode::kChanged);
}

EventOutcome CancelEvent(const std::string& storePath, Appointment& record) {
  return UpdateParticipants(storePath, record, UpdateMode::kCancel);
}

EventOutcome RemoveEventEntries(const std::string& storePath, std::uint64_t eventId) {
  bool allDeleted = false;
  return Change(
      storePath, eventId, [](Participant&) { return false; }, allDeleted);
}

EventOutcome DeleteEvent(EditLock& lock, bool tellParticipants) {
  Appointment record;
  EventOutcome outcome{lock.Read(&record)};
  if (outcome.result != CommandResult::kDone) return GiveUp(lock, outcome);
  const std::string store = ParticipantStorePath(lock.File().Path());
  const bool cancels = tellParticipants && record.header.eventFlag != kNoEvent;  // else nobody is to be told
  outcome = cancels ? CancelEvent(store, record) : RemoveEventEntries(store, record.header.recordId);
  if (!IsMade(outcome.result)) return GiveUp(lock, outcome);
  const bool stays = cancels && record.header.inUse != 0;
  const CommandResult done = stays ? lock.Write(&record) : lock.Delete();
  outcome.result = WorseOf(outcome.result, done);
  if (!IsMade(done)) return GiveUp(lock, outcome);
  outcome.result = lock.Finish(outcome.result);
  return outcome;
}

}  // namespace core
