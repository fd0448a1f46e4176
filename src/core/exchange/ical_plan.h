// What an iCalendar file comes to as appointments of a calendar: the plan of an import, made without a
// calendar and without a window, so that it can be shown, counted and refused before a byte is written.
//
//   IcalPlan plan = PlanIcal(text, options);        // ical_reader.h
//   IcalUpdate update = CompareWithCalendar(*file, std::move(plan));  // ical_update.h
//   ... show it, ask ...
//   IcalUpdateResult result = ApplyUpdate(*file, update);
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/calendar/appointment.h"

namespace core {

// Why something of the file is not in the calendar as the file has it, in the order in which users are told.
// DescribeIcalReason has the sentence of each.
enum class IcalReason {
  // Left out.
  kNoStart,     // no start that can be read
  kPrivate,     // private, for a user who may not make records confidential
  kOutside,     // days outside the calendar's years
  kSuperseded,  // the file has the same event again, or a later state of it
  kNoRoom,      // more records than one import makes, or rules that take too long
  kCancelled,
  kMethod,  // answers and cancellations that programs send each other
  kTask,
  kJournal,
  kFreeBusy,
  // Approximated: when.
  kBadRule,         // a repeat that cannot be read; the event is read without it
  kBadDate,         // an end, an exception or an extra date that cannot be read
  kLaterChange,     // a change of an occurrence and all behind it, made to the one alone
  kUnknownZone,     // detail: its name; read as local time
  kConverted,       // detail: the name of the zone
  kEndBeforeStart,  // ends as it starts
  kFiveMinutes,
  kSplit,       // over several days
  kCut,         // one repeat as several records
  kWrittenOut,  // a repeat as single appointments
  kHorizon,     // detail: the last day written of a repeat without an end
  kTooMany,     // detail: the last day written of a repeat that needs more records than an event may have
  kCutOff,      // the file, or the event, ends within it
  // Approximated: what.
  kCodePage,    // not UTF-8
  kLetters,     // characters that code page 1252 lacks
  kShortened,   // texts longer than their field
  kAlarms,      // more than one alarm, and those that a record cannot have
  kAttachment,  // further ones, and those that a record cannot hold
  kParticipants,
};

// True where the event, or one of its days, is left out; false where it is only approximated.
bool IsLeftOut(IcalReason reason);

// "3 events begin or end between five minutes", "1 task", ...
std::string DescribeIcalReason(IcalReason reason, std::size_t count);

// One approximation, or one thing left out.
struct IcalRemark {
  IcalReason reason;
  std::string subject;  // in code page 1252; what names the event where it has none
  Date date{};          // zero where it is not known
  std::string detail;   // the name of the zone, the last day written, ...; mostly empty
};

// A record that an event becomes, or one of several. Its header holds nothing but category and confidential;
// its importMark says which piece of which event it is.
struct PlannedRecord {
  Appointment record{};
  bool ownUid = false;  // the UID is one of ours: uid is the recordId of the appointment that was exported
};

struct IcalPlan {
  bool cancelled = false;              // by the progress function; nothing else holds anything then
  std::string refusal;                 // why nothing can be read from the file, for the user; else empty
  std::vector<PlannedRecord> records;  // the pieces of an event one behind the other
  std::vector<IcalRemark> remarks;
};

}  // namespace core
