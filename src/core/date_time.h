// Dates and times of day as the whole system and every data file hold them, and the arithmetic on them. What
// they read like is in time_texts.h.
//
// The calendar is bounded: only dates of the years kFirstYear to LastYear() have a day number, and stepping
// stops at the first and the last of them. Values that come from a file may be anything; every function here
// takes any value and answers with a refusal (false or -1) where it has no meaning.
#pragma once

#include <cstddef>
#include <cstdint>

namespace core {

// The calendar has two eras, which begin alike. A process lives in one of them from its start to its end.
inline constexpr int kFirstYear = 2000;
inline constexpr int kEarlyLastYear = 2020;
inline constexpr int kLateLastYear = 2099;

// The last year of the calendar: kEarlyLastYear, or kLateLastYear when the clock says at the first call that
// the early era is past.
int LastYear();

// Moves the process to an era by its last year, for tests.
void SetLastYear(int year);

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
Date LastDate();  // the last day of LastYear()

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

// The day number that the late era gives the date, whichever this one is. A file may hold dates that only the
// other era shows: they are kept, spelled and compared by this number.
int StoredDayIndex(const Date& date);

bool IsSameDate(const Date& a, const Date& b);

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

// So many days forward, or back when negative: as single steps would, but at once, whatever the number.
bool StepDays(Date& date, std::int32_t days);

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

}  // namespace core
