// Dates and times of day as users read them, by the user's own clock.
#pragma once

#include <string>

#include "core/date_time.h"

namespace core {

enum class ClockMode { k12Hours = 1, k24Hours = 2 };

// The user's preference. The value "iTime" of section "intl" in Daybrix.ini says it, 12 hours when it begins
// with '0' and else 24; without it the user's locale, and without a locale it is 24 hours. Read at the first
// call and kept for the life of the process.
ClockMode GetClockMode();

// Takes the place of "iTime", for tests.
void SetClockMode(ClockMode mode);

// "09:30 am", "12:05 pm", "00:05 am" or "09:30", "12:05", "00:05", by the clock mode.
std::string FormatTime(int hour, int minute, int half);
std::string FormatTime(const TimeOfDay& time);

// The same without the blank and with "a" or "p": "09:30a".
std::string FormatTimeCompact(int hour, int minute, int half);
std::string FormatTimeCompact(const TimeOfDay& time);

// "3/14/2004" with the 12-hour clock, "14/3/2004" with the 24-hour clock; where the locale says the clock, it
// says the order as well.
std::string FormatDate(int day, int month, int year);
std::string FormatDate(const Date& date);

// "January" .. "December".
std::string MonthName(int month);
std::string MonthName(const Date& date);

// "Sunday" .. "Saturday". An invalid date reads as "December": weekday -1 takes the text before the first.
std::string WeekdayName(const Date& date);

}  // namespace core
