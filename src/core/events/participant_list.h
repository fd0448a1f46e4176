// The participants of one event while they are shown and changed, thirty at most: read from the store,
// changed in memory, and saved. What another copy or the delivering side did to the others meanwhile stays,
// for only those that changed here are written.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/events/participant_store.h"

namespace core {

// What inviting somebody came to.
enum class InviteResult { kInvited, kOwnAddress, kDuplicate, kFull };

class ParticipantList {
 public:
  static constexpr std::size_t kMost = 30;

  // Reads the participants of the event, without those that somebody edits; the store is made where there is
  // none. kFailed, with a text for the user in Message, when that cannot be done.
  [[nodiscard]] CommandResult Load(const std::string& storePath, std::uint64_t eventId);

  // In the order of their names, and behind them those that were added. Places that became free, whose inUse
  // is 0, are among them.
  const std::vector<Participant>& Participants() const { return participants; }
  std::size_t InUseCount() const;

  // Puts a participant into the first free place, else at the end. False when there are thirty, free places
  // counted.
  bool Add(const Participant& participant);

  // The first participant in use with this e-mail address leaves the event (`newState` 0) or is cancelled
  // (any other). False when there is none.
  bool Mark(std::string_view email, int newState);

  // Marks a participant whom the event's owner takes off the list: one who knows of nothing, or who refused,
  // leaves; others stay as cancelled. `sendState` is the event's.
  bool Remove(std::string_view email, int sendState);

  // Adds a participant whom the event's owner invites, unless it is himself, or the e-mail address of
  // somebody in the list occurs in the new one's e-mail or name.
  [[nodiscard]] InviteResult Invite(std::string_view name, std::string_view email,
                                    std::string_view ownerEmail);

  // Brings the changes to the store, and from there to the disk. `stored` is the number of participants in
  // use. After a failure it can be called again.
  [[nodiscard]] CommandResult Save(int& stored);

  // Whether somebody's state, in use or not, is one of which he has to be told.
  bool SomebodyWaits() const;

  std::uint64_t EventId() const { return eventId; }
  // For the user, when Load or Save failed for another reason than its result says; names the file.
  const std::string& Message() const { return message; }

 private:
  [[nodiscard]] CommandResult SavePlace(RecordFile& store, std::size_t index);

  std::string path;
  std::uint64_t eventId = 0;
  std::vector<Participant> participants;
  // For each participant what the store has of him; an offset of 0 for nothing.
  std::vector<StoredParticipant> known;
  std::vector<StoredParticipant> leaving;  // whose places others have
  std::string message;
};

}  // namespace core
