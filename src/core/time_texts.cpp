#include "core/time_texts.h"

#include <optional>

#include "core/ini_file.h"
#include "platform/system/user_locale.h"
#include "resources/strings.h"
#include "resources/text_ids.h"

namespace core {
namespace {

std::string TwoDigits(std::int64_t number) {
  std::string text = std::to_string(number);
  if (number < 10) text.insert(text.begin(), '0');
  return text;
}

std::string TimeText(int hour, int minute, int half, const char* morning, const char* afternoon) {
  if (GetClockMode() == ClockMode::k24Hours) {
    return TwoDigits(std::int64_t{hour} + (half == kAfterNoon ? 12 : 0)) + ":" + TwoDigits(minute);
  }
  // The hour after midnight shows as 00, the hour after noon as 12.
  const int shown = hour == 0 && half == kAfterNoon ? 12 : hour;
  const bool padded = (shown >= 1 && shown <= 9) || (shown == 0 && half == kBeforeNoon);
  return (padded ? TwoDigits(shown) : std::to_string(shown)) + ":" + TwoDigits(minute) +
         (half == kBeforeNoon ? morning : afternoon);
}

struct Preference {
  ClockMode clock;
  bool monthFirst;
};
std::optional<Preference> preference;

Preference ReadPreference() {
  std::string value;
  if (IniFile("Daybrix.ini").ReadString("intl", "iTime", value)) {
    const bool twelveHours = value.front() == '0';
    return {twelveHours ? ClockMode::k12Hours : ClockMode::k24Hours, twelveHours};
  }
  const platform::TimeCustoms customs = platform::UserTimeCustoms();
  const bool twelveHours = customs.twelveHours.value_or(false);
  return {twelveHours ? ClockMode::k12Hours : ClockMode::k24Hours, customs.monthFirst.value_or(twelveHours)};
}

const Preference& GetPreference() {
  if (!preference) preference = ReadPreference();
  return *preference;
}

}  // namespace

ClockMode GetClockMode() {
  return GetPreference().clock;
}

void SetClockMode(ClockMode mode) {
  preference = {mode, mode == ClockMode::k12Hours};
}

std::string FormatTime(int hour, int minute, int half) {
  return TimeText(hour, minute, half, " am", " pm");
}

std::string FormatTime(const TimeOfDay& time) {
  return FormatTime(time.hour, time.minute, time.half);
}

std::string FormatTimeCompact(int hour, int minute, int half) {
  return TimeText(hour, minute, half, "a", "p");
}

std::string FormatTimeCompact(const TimeOfDay& time) {
  return FormatTimeCompact(time.hour, time.minute, time.half);
}

std::string FormatDate(int day, int month, int year) {
  const bool monthFirst = GetPreference().monthFirst;
  return std::to_string(monthFirst ? month : day) + "/" + std::to_string(monthFirst ? day : month) + "/" +
         std::to_string(year);
}

std::string FormatDate(const Date& date) {
  return FormatDate(date.day, date.month, date.year);
}

std::string MonthName(int month) {
  return IsValidMonth(month) ? resources::FindText(text::kJanuary + month - 1) : "";
}

std::string MonthName(const Date& date) {
  return MonthName(date.month);
}

std::string WeekdayName(const Date& date) {
  return resources::FindText(text::kSunday + Weekday(date));
}

}  // namespace core
