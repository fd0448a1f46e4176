#include "platform/system/clock.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <tuple>

#include "platform/system/user_locale.h"
#include "support/child_process.h"

namespace {

using platform::LocalTime;
using platform::Now;
using platform::ParseClockText;

auto Fields(const LocalTime& time) {
  return std::make_tuple(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

// The clock is set once for a process, so each value is tried in one of its own.
int InProcessWithClock(const char* value, const std::function<int()>& body) {
  tests::ChildProcess child([&](const tests::ChildProcess::Signal&) {
    setenv("DAYBRIX_CLOCK", value, 1);
    return body();
  });
  return child.ExitCode();
}

TEST(ClockTest, ReadsOneFormOnly) {
  LocalTime time = {};
  ASSERT_TRUE(ParseClockText("2004-02-29T10:43:12", time));
  EXPECT_EQ(Fields(time), std::make_tuple(2004, 2, 29, 10, 43, 12));
  EXPECT_TRUE(ParseClockText("9999-12-31T23:59:59", time));
  EXPECT_TRUE(ParseClockText("2000-02-29T00:00:00", time));
  for (const char* text :
       {"", "2004-03-14", "2004-03-14 10:43:12", "2004-03-14T10:43:12 ", " 2004-03-14T10:43:12",
        "2004-3-14T10:43:12", "2004-03-14T10:43:+2", "2004-03-14T10-43-12", "2004-03-14T10:43:1x",
        "2005-02-29T00:00:00", "1900-02-29T00:00:00", "2004-00-10T00:00:00", "2004-13-10T00:00:00",
        "2004-04-31T00:00:00", "2004-04-00T00:00:00", "0000-01-01T00:00:00", "2004-03-14T24:00:00",
        "2004-03-14T10:60:12", "2004-03-14T10:43:60"}) {
    EXPECT_FALSE(ParseClockText(text, time)) << text;
  }
}

TEST(ClockTest, StartsWhereItIsToldAndGoesOn) {
  const int code = InProcessWithClock("2004-12-31T23:59:59", [] {
    if (Fields(Now()) != std::make_tuple(2004, 12, 31, 23, 59, 59)) return 1;
    setenv("DAYBRIX_CLOCK", "2010-01-01T00:00:00", 1);
    usleep(1100 * 1000);
    const auto later = Fields(Now());
    return later >= std::make_tuple(2005, 1, 1, 0, 0, 0) && later < std::make_tuple(2005, 1, 1, 0, 1, 0) ? 0
                                                                                                         : 2;
  });
  EXPECT_EQ(code, 0);
}

TEST(ClockTest, FollowsTheMachineOtherwise) {
  for (const char* value : {"", "soon"}) {
    const int code = InProcessWithClock(value, [] {
      setenv("TZ", "UTC", 1);
      const time_t before = time(nullptr);
      const LocalTime now = Now();
      tm parts = {now.second, now.minute, now.hour, now.day, now.month - 1, now.year - 1900,
                  0,          0,          0,        0,       nullptr};
      const time_t told = timegm(&parts);
      return told >= before - 1 && told <= time(nullptr) ? 0 : 1;
    });
    EXPECT_EQ(code, 0) << value;
  }
}

TEST(UserLocale, CustomsAreReadFromTheForms) {
  const struct {
    const char* time;
    const char* date;
    std::optional<bool> twelveHours;
    std::optional<bool> monthFirst;
  } kForms[] = {
      {"%H:%M:%S", "%m/%d/%y", {}, {}},  // the locale "C"
      {"%r", "%m/%d/%Y", true, true},
      {"%I:%M:%S %p", "%d/%m/%y", true, false},
      {"%l:%M %p", "%D", true, true},
      {"%T", "%d/%m/%y", false, false},
      {"%H:%M:%S", "%e.%-m.%Y", false, false},
      {"%OI.%OM", "%b %d, %Y", true, true},
      {"%H:%M:%S", "%Y-%m-%d", false, {}},
      {"%T", "%F", false, {}},
      {"100%%I%", "", false, {}},
  };
  for (const auto& form : kForms) {
    const platform::TimeCustoms customs = platform::CustomsOfForms(form.time, form.date);
    EXPECT_EQ(customs.twelveHours, form.twelveHours) << form.time;
    EXPECT_EQ(customs.monthFirst, form.monthFirst) << form.date;
  }
}

}  // namespace
