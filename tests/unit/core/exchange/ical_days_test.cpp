// On random repeats, cut by random exceptions: the days that the records of an event show are those that
// libical's iterator finds, which shares nothing with ours.
#include <gtest/gtest.h>
#include <libical/ical.h>

#include <random>
#include <set>

#include "core/calendar/repeat_rule.h"
#include "core/exchange/ical_reader.h"
#include "support/era.h"

namespace tests {
namespace {

class RandomRules {
 public:
  explicit RandomRules(unsigned seed) : random(seed) {}

  int Below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(random); }

  std::string Rule() {
    static const char* const kDays[] = {"SU", "MO", "TU", "WE", "TH", "FR", "SA"};
    const auto day = [&] { return std::string(kDays[Below(7)]); };
    std::string rule;
    switch (Below(9)) {
      case 0:
        rule = "FREQ=DAILY";
        break;
      case 1:
      case 2:
      case 3:
        rule = std::string("FREQ=WEEKLY;BYDAY=SU,") + kDays[Below(3) + 1] + ',' + kDays[Below(3) + 4];
        break;
      case 4:
        rule = "FREQ=MONTHLY;BYMONTHDAY=" + std::to_string(Below(31) + 1);
        break;
      case 5:
        rule = "FREQ=MONTHLY;BYMONTHDAY=-" + std::to_string(Below(5) + 1);
        break;
      case 6:
        rule = "FREQ=MONTHLY;BYDAY=" + std::to_string(Below(4) + 1) + day();
        break;
      case 7:
        rule = "FREQ=YEARLY";
        break;
      default:
        rule = "FREQ=YEARLY;BYMONTH=" + std::to_string(Below(12) + 1) + ";BYDAY=-1" + day();
    }
    // libical takes the wrong first week where the event's own day is not among those of its repeat.
    if (rule.find("WEEKLY") == std::string::npos && Below(2) == 0)
      rule += ";INTERVAL=" + std::to_string(Below(4) + 1);
    return rule +
           (Below(3) == 0 ? ";COUNT=" + std::to_string(Below(60) + 1) : ";UNTIL=2012" + Month() + "15");
  }

  std::string Month() { return TwoDigits(Below(12) + 1); }
  std::string Start() { return std::to_string(1997 + Below(10)) + Month() + TwoDigits(Below(28) + 1); }

 private:
  static std::string TwoDigits(int number) { return std::to_string(100 + number).substr(1); }

  std::mt19937 random;
};

// The days from 2000 on. DTSTART is an occurrence, whatever the rule says.
std::set<int> DaysByLibical(const std::string& start, const std::string& rule) {
  std::set<int> days;
  icaltimetype time = icaltime_from_string(start.c_str());
  const auto add = [&] {
    const int day = core::DayIndex(time.year, time.month, time.day);
    if (day >= 0 && time.year <= core::kEarlyLastYear) days.insert(day);
  };
  add();
  icalrecur_iterator* iterator = icalrecur_iterator_new(icalrecurrencetype_from_string(rule.c_str()), time);
  if (iterator == nullptr) return days;
  for (time = icalrecur_iterator_next(iterator); icaltime_is_null_time(time) == 0;
       time = icalrecur_iterator_next(iterator))
    add();
  icalrecur_iterator_free(iterator);
  return days;
}

TEST(IcalDays, AreThoseOfAnotherReader) {
  constexpr int kRules = 300;
  for (const int year : {core::kEarlyLastYear, core::kLateLastYear}) {
    const Era era(year);
    RandomRules random(static_cast<unsigned>(year));
    for (int i = 0; i < kRules; ++i) {
      const std::string start = random.Start();
      const std::string rule = random.Rule();
      std::set<int> expected = DaysByLibical(start, rule);
      std::string text = "BEGIN:VEVENT\nDTSTART:";
      text.append(start).append("\nRRULE:").append(rule) += '\n';
      for (int n = random.Below(4); n > 0 && !expected.empty(); --n) {
        auto gone = expected.begin();
        std::advance(gone, random.Below(static_cast<int>(expected.size())));
        core::Date date{};
        ASSERT_TRUE(core::DateFromIndex(*gone, date));
        text.append("EXDATE:").append(std::to_string(date.year * 10000 + date.month * 100 + date.day)) +=
            '\n';
        expected.erase(gone);
      }
      const core::IcalPlan plan =
          core::PlanIcal(text + "END:VEVENT\n", {"UTC", {{1, 1, 2004}, {}}, {}, true});
      std::set<int> shown;
      for (const core::PlannedRecord& planned : plan.records) {
        const core::Appointment& record = planned.record;
        std::optional<core::Date> date = record.date;
        for (; date && date->year <= core::kEarlyLastYear; date = core::NextOccurrence(record, *date)) {
          EXPECT_TRUE(shown.insert(core::DayIndex(*date)).second) << "twice: " << text;
          EXPECT_TRUE(core::OccursOnDate(&record, &*date)) << text;
          if (!core::HasRepeat(record)) break;
        }
      }
      ASSERT_EQ(shown, expected) << text;
    }
  }
}

}  // namespace
}  // namespace tests
