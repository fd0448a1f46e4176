// What an event says beside its times, as the fields of a record.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/calendar/alarm_schedule.h"
#include "core/calendar/appointment.h"
#include "core/exchange/ical_event.h"
#include "core/exchange/ical_fit.h"

namespace core {

// What the fields could not hold.
struct IcalFieldLoss {
  bool codePage = false;  // a text is not UTF-8
  bool letters = false;
  bool shortened = false;
  bool alarms = false;
  bool attachment = false;
};

// A TEXT value in code page 1252, line ends as LF.
std::string StoredText(std::string_view value, IcalFieldLoss& loss);

// Whether only those may see it who may see confidential records: nobody can tell what an unknown class
// means.
bool IsPrivate(const IcalEvent& event);

// Subject, notes, category, confidential and attachment. `categories` are those of the calendar's list.
void WriteFields(const IcalEvent& event, const std::vector<std::string>& categories, Appointment& record,
                 IcalFieldLoss& loss);

// The alarm of the event's alarms that a record has, and whether it is still to come; off where there is
// none. The record's dates and times are those of the piece.
void WriteAlarm(const IcalEvent& event, const IcalPiece& piece, const IcalZones& zones,
                const AlarmMoment& now, Appointment& record, IcalFieldLoss& loss);

}  // namespace core
