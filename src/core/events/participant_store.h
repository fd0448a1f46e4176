// The participants of events as they lie in the store beside a calendar. A participant whom somebody edits is
// passed over by everything here, and so is one whose slot has meanwhile gone to another.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/events/participant.h"
#include "core/store/edit_lock.h"

namespace core {

struct StoredParticipant {
  Participant participant;
  std::int32_t offset;  // of its slot when it was read
};

// Reads the participants of an event, by name, the first `most` of them; those that somebody edits are among
// them. kFailed when the store could not be read whole; what could be read is there all the same.
[[nodiscard]] CommandResult ReadParticipants(const RecordFile& store, std::uint64_t eventId, std::size_t most,
                                             std::vector<StoredParticipant>& participants);

// Takes the edit lock of a participant that was read, and lets `change` say what becomes of it: it is given
// what the store holds now, and answers whether to keep it, as it then is, or to delete it. kLocked and
// kVanished when it is passed over.
[[nodiscard]] CommandResult ChangeParticipant(RecordFile& store, const StoredParticipant& known,
                                              const std::function<bool(Participant&)>& change);

// How many an operation on all participants of an event met, and what it came to.
struct ParticipantChanges {
  CommandResult result = CommandResult::kDone;  // the worst there was, but for those that were passed over
  int met = 0;
  int deleted = 0;
};

// ChangeParticipant for each participant of an event, and brings all to the disk.
[[nodiscard]] ParticipantChanges ChangeParticipants(RecordFile& store, std::uint64_t eventId,
                                                    const std::function<bool(Participant&)>& change);

}  // namespace core
