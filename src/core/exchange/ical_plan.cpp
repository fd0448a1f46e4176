#include "core/exchange/ical_plan.h"

#include <array>

namespace core {
namespace {

// What stands behind the number of events, for one and for several.
struct ReasonText {
  const char* one;
  const char* several;
};

constexpr std::array<ReasonText, 29> kTexts{{
    {"event has no start that can be read", "events have no start that can be read"},
    {"private event may be read in by the owner only", "private events may be read in by the owner only"},
    {"event has days outside the calendar's years", "events have days outside the calendar's years"},
    {"event is in the file more than once", "events are in the file more than once"},
    {"event would need too many records or too much time",
     "events would need too many records or too much time"},
    {"cancelled event", "cancelled events"},
    {"event of a message that cancels or answers", "events of messages that cancel or answer"},
    {"task", "tasks"},
    {"journal entry", "journal entries"},
    {"entry of free and busy times", "entries of free and busy times"},
    {"event repeats in a way that cannot be read", "events repeat in a way that cannot be read"},
    {"event has an end, an exception or a further date that cannot be read",
     "events have an end, an exception or a further date that cannot be read"},
    {"change of an occurrence and all behind it was made to the one alone",
     "changes of an occurrence and all behind it were made to the one alone"},
    {"event is in an unknown time zone and was read as local time",
     "events are in an unknown time zone and were read as local time"},
    {"event was converted from another time zone", "events were converted from another time zone"},
    {"event ends before it starts", "events end before they start"},
    {"event begins or ends between five minutes", "events begin or end between five minutes"},
    {"event was split over days", "events were split over days"},
    {"repeat was cut into several", "repeats were cut into several"},
    {"repeat was written out as single appointments", "repeats were written out as single appointments"},
    {"repeat without an end was written out for some years",
     "repeats without an end were written out for some years"},
    {"repeat was ended because it needs too many records",
     "repeats were ended because they need too many records"},
    {"event is cut off", "events are cut off"},
    {"event is not UTF-8 and was read as code page 1252",
     "events are not UTF-8 and were read as code page 1252"},
    {"event has characters that the calendar lacks", "events have characters that the calendar lacks"},
    {"event has a text that was shortened", "events have a text that was shortened"},
    {"event has alarms that were left out", "events have alarms that were left out"},
    {"event has an attachment that was left out", "events have an attachment that was left out"},
    {"event has participants, who were left out", "events have participants, who were left out"},
}};
static_assert(kTexts.size() == static_cast<std::size_t>(IcalReason::kParticipants) + 1);

}  // namespace

bool IsLeftOut(IcalReason reason) {
  return reason <= IcalReason::kFreeBusy;
}

std::string DescribeIcalReason(IcalReason reason, std::size_t count) {
  const ReasonText& text = kTexts[static_cast<std::size_t>(reason)];
  return std::to_string(count) + ' ' + (count == 1 ? text.one : text.several);
}

}  // namespace core
