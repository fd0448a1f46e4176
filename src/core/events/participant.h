// A participant of an internet event: one slot of the store beside a calendar. Of the record header only its
// size and its two state bytes are used; the rest is zero, the record id too, so that a participant is known
// by event and e-mail address.
//
// The calendar writes the states wait (1) and cancelled (8); who delivers invitations and brings replies
// writes the others, in the same file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/calendar/appointment.h"
#include "core/store/record_format.h"
#include "core/store/record_sort.h"
#include "core/store/value_compare.h"

namespace core {

enum ParticipantState : std::uint8_t {
  kWaitForSend = 1,
  kNoReply = 2,
  kAccepted = 3,
  kNewData = 4,
  kRejected = 5,
  kAcceptedAgain = 6,
  kAcceptMessage = 7,
  kCancelled = 8,
};

// What an appointment's eventFlag says.
enum EventState : std::uint8_t { kNoEvent = 0, kInternetEvent = 1, kCancelledEvent = 9 };

// What its eventRole says; other values are the delivering side's.
enum EventSendState : std::uint8_t { kSendNew = 1, kSendCancelled = 4, kSendChanged = 5 };

#pragma pack(push, 1)

struct Participant {
  RecordHeader header;
  std::uint8_t state;  // a ParticipantState
  std::uint64_t eventId;
  char name[50];
  char email[300];
};

#pragma pack(pop)

static_assert(sizeof(Participant) == 908 && sizeof(Participant) == kSendKind.slotSize);
static_assert(offsetof(Participant, state) == 549 && offsetof(Participant, eventId) == 550);
static_assert(offsetof(Participant, name) == 558 && offsetof(Participant, email) == 608);

// By name, A to Z as a to z.
inline constexpr RecordOrder kParticipantOrder{offsetof(Participant, name), sizeof(Participant::name),
                                               CompareText};

// A participant who waits for an invitation to the event. The texts are cut to what the fields hold with a
// terminator.
Participant NewParticipant(std::uint64_t eventId, std::string_view name, std::string_view email);

// How a state is shown; "?" for one that is none.
const char* ParticipantStateText(int state);

// The line of a list: e-mail, name and state, with line feeds between.
std::string ParticipantItem(const Participant& participant);

// The store of a calendar's events: beside the file that a link leads to, so that all who know the calendar
// by different paths meet in one.
std::string ParticipantStorePath(const std::string& calendar);
// The calendar of such a store.
std::string CalendarOfStore(const std::string& storePath);

// Whether the open calendar's owner made the record: only he may change its event.
bool IsEventOwner(const RecordFile& file, const Appointment& record);

}  // namespace core
