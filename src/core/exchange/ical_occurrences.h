// The occurrences of any repeat, one after the other. An iterator of our own, because a file may hold a
// repeat that never matches, over which others brood for minutes within one call: here all work is counted.
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/exchange/ical_value.h"

namespace core {

// Work that may still be done, in days and times looked at.
struct IcalWork {
  std::int64_t left = 0;
  bool Take(std::int64_t work) {
    left -= work;
    return left >= 0;
  }
};

class IcalOccurrences {
 public:
  // `start`: the wall clock of DTSTART. `until`: the last wall clock of interest. Where the rule has no COUNT
  // the occurrences begin near `from`; earlier ones may come. The rule and the work must outlive it.
  IcalOccurrences(const IcalRule& rule, std::int64_t start, std::int64_t from, std::int64_t until,
                  IcalWork& work);

  // The wall clock of the next occurrence, in ascending order. False behind the last one, and where the work
  // is used up.
  bool Next(std::int64_t& wall);

 private:
  // Which days of a span pass; spans are the rule's years, months, weeks or days.
  struct Numbers {  // of a BYxxx list, from the front and from the back
    std::bitset<400> front, back;
    bool any = false;
    void Set(const std::vector<int>& numbers);
    bool Has(int number, int length) const {
      const int fromBack = length - number + 1;
      return !any || front[static_cast<std::size_t>(number)] || back[static_cast<std::size_t>(fromBack)];
    }
    bool HasTime(int number) const { return !any || front[static_cast<std::size_t>(number)]; }
  };

  void SetDefaults();
  void SetTimes();
  bool Span(std::int64_t index, int& first, int& last) const;
  bool Passes(int day) const;
  bool WeekdayPasses(int day, const CivilDate& date, int yearDay, int yearLength) const;
  int WeekNumber(int day, int& weeks) const;
  bool FillSpan();
  bool FillDay();
  void ChoosePositions(const std::vector<int>& days);

  const IcalRule& rule;
  const std::int64_t start;
  const std::int64_t until;
  IcalWork& work;

  Numbers months, monthDays, yearDays, weeks, hours, minutes, seconds;
  std::uint8_t everyWeekday = 0;      // bits: weekdays without a number
  std::vector<IcalWeekday> numbered;  // weekdays with one
  bool anyWeekday = false;
  std::vector<int> times;  // seconds of a day, ascending; of rules that repeat by days or longer
  std::int64_t nextSpan = 0;
  std::int64_t step = 1;            // seconds, of rules that repeat within a day
  std::vector<std::int64_t> found;  // of the current span
  std::size_t at = 0;
  std::int64_t counted = 0;
};

}  // namespace core
