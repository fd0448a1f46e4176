#include "core/events/participant_list.h"

#include <algorithm>
#include <cstring>

#include "core/store/companion_file.h"
#include "core/store/file_messages.h"

namespace core {
namespace {

bool IsInUse(const Participant& participant) {
  return participant.header.inUse != 0;
}

bool Leaves(Participant&) {
  return false;
}

// Looks for a participant that a compaction has moved; kVanished when it is in the store no more.
CommandResult FindMoved(const RecordFile& store, StoredParticipant& known) {
  std::vector<StoredParticipant> stored;
  const CommandResult read =
      ReadParticipants(store, known.participant.eventId, RecordList::kMostRecords, stored);
  const auto found = std::find_if(stored.begin(), stored.end(), [&known](const StoredParticipant& one) {
    return ReadText(one.participant.email) == ReadText(known.participant.email);
  });
  if (found == stored.end()) return read == CommandResult::kDone ? CommandResult::kVanished : read;
  known.offset = found->offset;
  return CommandResult::kDone;
}

CompanionFile OpenStore(const std::string& path) {
  return OpenOrMakeCompanion(path, kSendKind, "", CalendarOfStore(path));
}

// One whom somebody edits, or who is gone, is passed over.
CommandResult Change(RecordFile& store, StoredParticipant& known,
                     const std::function<bool(Participant&)>& change) {
  CommandResult result = ChangeParticipant(store, known, change);
  if (result == CommandResult::kVanished) {
    result = FindMoved(store, known);
    if (result == CommandResult::kDone) result = ChangeParticipant(store, known, change);
  }
  const bool passedOver = result == CommandResult::kLocked || result == CommandResult::kVanished;
  return passedOver ? CommandResult::kDone : result;
}

}  // namespace

CommandResult ParticipantList::Load(const std::string& storePath, std::uint64_t wantedId) {
  path = storePath;
  eventId = wantedId;
  participants.clear();
  known.clear();
  leaving.clear();
  const CompanionFile opened = OpenStore(path);
  message = opened.message;
  if (opened.file == nullptr) return CommandResult::kFailed;
  const CommandResult result = ReadParticipants(*opened.file, eventId, kMost, known);
  std::erase_if(known,
                [](const StoredParticipant& stored) { return stored.participant.header.editLock == 1; });
  for (const StoredParticipant& stored : known) participants.push_back(stored.participant);
  if (result != CommandResult::kDone) message = DescribeResult(*opened.file, result);
  return result;
}

std::size_t ParticipantList::InUseCount() const {
  return static_cast<std::size_t>(std::count_if(participants.begin(), participants.end(), IsInUse));
}

bool ParticipantList::Add(const Participant& participant) {
  if (participants.size() >= kMost) return false;
  const auto free = std::find_if_not(participants.begin(), participants.end(), IsInUse);
  const auto index = static_cast<std::size_t>(free - participants.begin());
  if (free == participants.end()) {
    participants.emplace_back();
    known.emplace_back();
  } else if (known[index].offset != 0) {
    leaving.push_back(known[index]);
    known[index] = {};
  }
  Participant& place = participants[index];
  place = participant;
  place.header.inUse = 1;
  return true;
}

bool ParticipantList::Mark(std::string_view email, int newState) {
  const auto found = std::find_if(participants.begin(), participants.end(), [email](const Participant& one) {
    return IsInUse(one) && ReadText(one.email) == email;
  });
  if (found == participants.end()) return false;
  if (newState == 0) {
    found->header.inUse = 0;
  } else {
    found->state = kCancelled;
  }
  return true;
}

bool ParticipantList::Remove(std::string_view email, int sendState) {
  for (const Participant& one : participants) {
    if (!IsInUse(one) || ReadText(one.email) != email) continue;
    const bool leaves = (one.state == kWaitForSend && sendState == kSendNew) || one.state == kRejected;
    return Mark(email, leaves ? 0 : kCancelled);
  }
  return false;
}

InviteResult ParticipantList::Invite(std::string_view name, std::string_view email,
                                     std::string_view ownerEmail) {
  const Participant invited = NewParticipant(eventId, name, email);
  if (ReadText(invited.email) == ownerEmail) return InviteResult::kOwnAddress;
  const std::string item = ParticipantItem(invited);
  for (const Participant& one : participants) {
    if (IsInUse(one) && item.find(ReadText(one.email)) != std::string::npos) return InviteResult::kDuplicate;
  }
  return Add(invited) ? InviteResult::kInvited : InviteResult::kFull;
}

bool ParticipantList::SomebodyWaits() const {
  return std::any_of(participants.begin(), participants.end(), [](const Participant& one) {
    return one.state == kWaitForSend || one.state == kCancelled;
  });
}

// Each participant is stored by one step, which is in the store whole or not at all.
CommandResult ParticipantList::SavePlace(RecordFile& store, std::size_t index) {
  const Participant& mine = participants[index];
  StoredParticipant& its = known[index];
  if (its.offset == 0) {
    if (!IsInUse(mine)) return CommandResult::kDone;
    Participant added = NewParticipant(eventId, ReadText(mine.name), ReadText(mine.email));
    added.state = mine.state;
    std::int32_t offset = 0;
    const CommandResult result = FromFile(store, store.AddRecord(&added, &offset));
    if (IsMade(result)) its = {added, offset};
    return result;
  }
  if (IsInUse(mine) && mine.state == its.participant.state) return CommandResult::kDone;
  const CommandResult result = Change(store, its, [&mine](Participant& participant) {
    participant.state = mine.state;
    return IsInUse(mine);
  });
  if (IsMade(result)) its = IsInUse(mine) ? StoredParticipant{mine, its.offset} : StoredParticipant{};
  return result;
}

CommandResult ParticipantList::Save(int& stored) {
  stored = static_cast<int>(InUseCount());
  const CompanionFile opened = OpenStore(path);
  message = opened.message;
  if (opened.file == nullptr) return CommandResult::kFailed;
  RecordFile& store = *opened.file;
  CommandResult result = CheckMayChange(store);
  // Forgotten once they are gone: the same person may be invited into the slot again.
  while (!leaving.empty() && IsMade(result)) {
    result = WorseOf(result, Change(store, leaving.back(), Leaves));
    if (IsMade(result)) leaving.pop_back();
  }
  for (std::size_t i = 0; i < participants.size() && IsMade(result); ++i) {
    result = WorseOf(result, SavePlace(store, i));
  }
  // With nobody left no record of the event may stay, those beyond the thirty included.
  if (stored == 0 && IsMade(result)) {
    result = WorseOf(result, ChangeParticipants(store, eventId, Leaves).result);
  }
  result = Flush(store, result);
  if (result != CommandResult::kDone) message = DescribeResult(store, result);
  return result;
}

}  // namespace core
