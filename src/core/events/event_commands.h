// What becomes of an internet event when its participants are chosen, when it is changed and when it is
// deleted. An appointment and its participants lie in two files: each command writes them in an order in
// which a program that dies between the two leaves what the next command brings right.
//
// The caller holds the edit lock of the appointment, as for every change of it.
#pragma once

#include <cstdint>
#include <string>

#include "core/calendar/appointment.h"
#include "core/events/participant_list.h"
#include "core/store/edit_lock.h"

namespace core {

struct EventOutcome {
  CommandResult result = CommandResult::kDone;
  std::string message = {};  // for the user, when the participants could not be reached or stored
};

// What SendEvent answers.
inline constexpr int kEventSettled = 1;
inline constexpr int kEventWaits = 100;  // something now waits to be delivered: the user is told so

// How the list that the owner chose changes an event; `record` gets its new event state.
int DecideEvent(const ParticipantList& list, Appointment& record);

// Stores an event whose participants, and perhaps its subject, the owner chose: the appointment first where
// it becomes or stays an event, so that no participant waits who belongs to none; the participants first
// where the last one left. Gives the lock back and brings all to the disk. `answer` is one of the two above.
[[nodiscard]] EventOutcome SendEvent(ParticipantList& list, EditLock& lock, Appointment& record, int& answer);

enum class UpdateMode { kCancel = 1, kChanged = 3 };

// Brings a change of an event to its participants. `record` gets its new states; the caller writes it next,
// or deletes it where its inUse is 0: of an event that nobody was invited to nothing remains. Whoever dies in
// between has the command to give again, which does the same. Does nothing to a plain appointment.
[[nodiscard]] EventOutcome UpdateParticipants(const std::string& storePath, Appointment& record,
                                              UpdateMode mode);
[[nodiscard]] EventOutcome NotifyChanged(const std::string& storePath, Appointment& record);
[[nodiscard]] EventOutcome CancelEvent(const std::string& storePath, Appointment& record);

// Deletes the participants of an event. To be done before its appointment is deleted.
[[nodiscard]] EventOutcome RemoveEventEntries(const std::string& storePath, std::uint64_t eventId);

// Deletes an event whose lock is held: cancels it where the participants are to be told, so that it stays in
// the file as a cancelled one, else takes it away with them. Gives the lock back. The appointment stands when
// the participants could not be reached.
[[nodiscard]] EventOutcome DeleteEvent(EditLock& lock, bool tellParticipants);

}  // namespace core
