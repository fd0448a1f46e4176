// The time zones that an iCalendar file names, and what the wall clock of the calendar's zone shows then.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/exchange/ical_occurrences.h"
#include "platform/system/time_zone.h"

namespace core {

struct IcalZone {
  std::string name;
  platform::TimeZone zone;
  bool known = true;         // false: nobody knows it
  bool isCalendars = false;  // its clock shows what the calendar's does
  std::vector<std::int64_t>
      moves;  // moments at which its clock comes to differ otherwise from the calendar's
};

class IcalZones {
 public:
  explicit IcalZones(platform::TimeZone calendarZone);

  // A VTIMEZONE of the file. It must outlive the zones.
  void Define(std::string_view component);

  // The zone that a TZID names: in the zone database, else in the file, else in the table of names that other
  // systems have. Never null; stays while the zones live.
  const IcalZone* Find(std::string_view name, IcalWork& work);
  const IcalZone* Utc() const { return &utc; }

  // What the clock of `to` shows when that of `from` shows `wall`. A null zone is the calendar's own.
  std::int64_t Convert(const IcalZone* from, std::int64_t wall, const IcalZone* to) const;

 private:
  IcalZone Make(std::string_view name, platform::TimeZone zone) const;
  std::unique_ptr<IcalZone> Resolve(std::string_view name, IcalWork& work) const;

  platform::TimeZone calendar;
  IcalZone utc;
  std::map<std::string, std::string_view, std::less<>> definitions;
  std::map<std::string, std::unique_ptr<IcalZone>, std::less<>> found;
  IcalZone unknown;
};

// The name that the zone database has for a zone by its name elsewhere ("W. Europe Standard Time"); empty for
// an unknown one.
std::string_view DatabaseZoneName(std::string_view name);

}  // namespace core
