// Dates and times of day as the whole system and every data file hold them, and the arithmetic on them.
//
// The calendar is bounded: only dates of the years kFirstYear to kLastYear have a day number, and stepping
// stops at the first and the last of them. Values that come from a file may be anything; every function here
// takes any value and answers with a refusal (false or -1) where it has no meaning.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace core {

inline constexpr int kFirstYear = 2000;
inline constexpr int kLastYear = DAYBRIX_LAST_YEAR;
static_assert(kFirstYear < kLastYear && kLastYear < 10000);

inline constexpr int kDaySlots = 288;  // five-minute slots of a day

#pragma pack(push, 1)

// A calendar date, as stored.
struct Date {
  std::int32_t day;    // 1..31
  std::int32_t month;  // 1..12
  std::int32_t year;   // full, e.g. 2004
};

enum Half : std::int32_t { kBeforeNoon = 1, kAfterNoon = 2 };

// A time of day on a 12-hour face, as stored. Midnight is hour 0 before noon, noon is hour 0 after noon.
struct TimeOfDay {
  std::int32_t hour;    // 0..11; 12 is accepted on input
  std::int32_t minute;  // 0..59; every comparison truncates to five minutes
  std::int32_t second;  // kept from the clock, ignored by every comparison and text
  std::int32_t half;    // kBeforeNoon; every other value counts as after noon in comparisons
};

#pragma pack(pop)

static_assert(sizeof(Date) == 12 && alignof(Date) == 1);
static_assert(offsetof(Date, day) == 0 && offsetof(Date, month) == 4 && offsetof(Date, year) == 8);
static_assert(sizeof(TimeOfDay) == 16 && alignof(TimeOfDay) == 1);
static_assert(offsetof(TimeOfDay, hour) == 0 && offsetof(TimeOfDay, minute) == 4);
static_assert(offsetof(TimeOfDay, second) == 8 && offsetof(TimeOfDay, half) == 12);

inline constexpr Date kFirstDate{1, 1, kFirstYear};
inline constexpr Date kLastDate{31, 12, kLastYear};

// What a repeat rule without an end date stores as its end.
inline constexpr Date kNoEndDate = kLastDate;

// ---- The calendar ----

bool IsLeapYear(int year);
bool IsValidMonth(int month);

// Whether the month has such a day. The year is not bounded here; it only decides 29 February.
bool IsValidDate(int day, int month, int year);

// 28..31, or -1 for a month outside 1..12. The year is not bounded.
int DaysInMonth(int year, int month);

// The day number: days since 1 January kFirstYear, which is 0. -1 for every date without one.
int DayIndex(int year, int month, int day);
int DayIndex(const Date& date);

// The date of a day number. False, `date` untouched, when no date has it.
bool DateFromIndex(int index, Date& date);

// 0 (Sunday) .. 6 (Saturday) of any valid date, whatever its year; -1 for an invalid one.
int Weekday(int year, int month, int day);
int Weekday(const Date& date);

// ---- Times ----

// The five-minute slot of the day, 0..287 (hour 12 reaches up to 299). -1 unless 0 <= hour <= 12 and
// 0 <= minute <= 55.
int TimeSlot(int hour, int minute, int half);
int TimeSlot(const TimeOfDay& time);

// The inverse. False, nothing written, when the slot is not in 0..287. `second` is never written.
bool TimeFromSlot(int slot, TimeOfDay& time);

// ---- Steps: true when the date was moved, false when the step was refused and the date left alone ----

bool NextDay(Date& date);
bool PreviousDay(Date& date);

// Seven single steps. One that would cross an edge of the calendar stops at the edge and still succeeds; it
// is refused only when it ends on a date without a day number.
bool NextWeek(Date& date);
bool PreviousWeek(Date& date);

// The day is kept, or becomes the new month's last day where the month has no such day.
bool NextMonth(Date& date);
bool PreviousMonth(Date& date);

// ---- The clock ----

// The local date. A clock beyond the calendar reads as the calendar's last day, one before it as its first.
Date Today();

// The local time. The minute is lowered to a multiple of `step` (0: left alone).
TimeOfDay NowRounded(int step);

// ---- Texts ----

enum class ClockMode { k12Hours = 1, k24Hours = 2 };

// The user's preference: 12 hours when the value "iTime" of section "intl" in Daybrix.ini begins with '0',
// else 24. Read at the first call and kept for the life of the process.
ClockMode GetClockMode();

// Takes the place of the preference, for tests.
void SetClockMode(ClockMode mode);

// "09:30 am", "12:05 pm", "00:05 am" or "09:30", "12:05", "00:05", by the clock mode.
std::string FormatTime(int hour, int minute, int half);
std::string FormatTime(const TimeOfDay& time);

// The same without the blank and with "a" or "p": "09:30a".
std::string FormatTimeCompact(int hour, int minute, int half);
std::string FormatTimeCompact(const TimeOfDay& time);

// "3/14/2004" with the 12-hour clock, "14/3/2004" with the 24-hour clock.
std::string FormatDate(int day, int month, int year);
std::string FormatDate(const Date& date);

// "January" .. "December".
std::string MonthName(int month);
std::string MonthName(const Date& date);

// "Sunday" .. "Saturday". An invalid date reads as "December": weekday -1 takes the text before the first.
std::string WeekdayName(const Date& date);

}  // namespace core
