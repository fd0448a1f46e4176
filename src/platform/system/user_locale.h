// How the user's locale writes times and dates.
#pragma once

#include <optional>
#include <string_view>

namespace platform {

// Nothing for what the locale does not say.
struct TimeCustoms {
  std::optional<bool> twelveHours;
  std::optional<bool> monthFirst;  // else the day comes first
};

// Of the locale that LC_ALL, LC_TIME or LANG names; nothing when it is not installed.
TimeCustoms UserTimeCustoms();

// Of a locale whose time of day and date have these forms of strftime, e.g. "%r" and "%m/%d/%Y". The forms of
// the locale "C" are nobody's custom, and one that begins with the year does not say how it goes on without.
TimeCustoms CustomsOfForms(std::string_view time, std::string_view date);

}  // namespace platform
