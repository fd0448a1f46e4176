#include "core/events/participant_store.h"

#include "core/store/record_query.h"

namespace core {
namespace {

bool IsSame(const Participant& now, const Participant& known) {
  return now.eventId == known.eventId && ReadText(now.email) == ReadText(known.email);
}

}  // namespace

CommandResult ReadParticipants(const RecordFile& store, std::uint64_t eventId, std::size_t most,
                               std::vector<StoredParticipant>& participants) {
  participants.clear();
  RecordQuery ofEvent;
  ofEvent.AddInt64Condition(offsetof(Participant, eventId), ConditionOp::kEqual,
                            static_cast<std::uint32_t>(eventId), static_cast<std::uint32_t>(eventId >> 32),
                            Connector::kAnd);
  if (!ofEvent.Run(store)) return CommandResult::kFailed;
  static_cast<void>(ofEvent.Sort(store, kParticipantOrder));  // IsWhole tells
  bool whole = ofEvent.IsWhole();
  for (const RecordKey& key : ofEvent.Keys()) {
    if (participants.size() == most) break;
    StoredParticipant stored{{}, key.offset};
    const bool read = store.ReadSlot(&stored.participant, key.offset);
    whole = whole && read;
    const Participant& participant = stored.participant;
    if (read && participant.header.inUse == 1 && participant.eventId == eventId)
      participants.push_back(stored);
  }
  return whole ? CommandResult::kDone : CommandResult::kFailed;
}

CommandResult ChangeParticipant(RecordFile& store, const StoredParticipant& known,
                                const std::function<bool(Participant&)>& change) {
  // The caller may hold the lock of the appointment, under which no list is rebuilt.
  const bool refreshed = RefreshEnabled();
  // Looked at first: a compaction may have put somebody else's participant there, and its lock would keep who
  // works on that one from it.
  Participant now;
  if (store.ReadSlot(&now, known.offset) && !IsSame(now, known.participant)) return CommandResult::kVanished;
  EditLock lock(store);
  CommandResult result = lock.Take({known.offset, known.participant.header.recordId});
  if (result != CommandResult::kDone) return result;
  result = lock.Read(&now);
  if (result == CommandResult::kDone && !IsSame(now, known.participant)) result = CommandResult::kVanished;
  if (result == CommandResult::kDone) result = change(now) ? lock.Write(&now) : lock.Delete();
  const CommandResult released = lock.Release();
  SetRefreshEnabled(refreshed);
  if (released == CommandResult::kDone) return result;
  return IsMade(result) ? WorseOf(result, CommandResult::kMadeLockLeft) : released;
}

ParticipantChanges ChangeParticipants(RecordFile& store, std::uint64_t eventId,
                                      const std::function<bool(Participant&)>& change) {
  ParticipantChanges changes;
  changes.result = CheckMayChange(store);
  if (changes.result != CommandResult::kDone) return changes;
  std::vector<StoredParticipant> participants;
  changes.result = ReadParticipants(store, eventId, RecordQuery::kMostRecords, participants);
  for (const StoredParticipant& stored : participants) {
    ++changes.met;
    bool kept = true;
    const CommandResult result = ChangeParticipant(store, stored, [&](Participant& participant) {
      kept = change(participant);
      return kept;
    });
    if (IsMade(result) && !kept) ++changes.deleted;
    const bool passedOver = result == CommandResult::kLocked || result == CommandResult::kVanished;
    if (!passedOver) changes.result = WorseOf(changes.result, result);
  }
  return {Flush(store, changes.result), changes.met, changes.deleted};
}

}  // namespace core
