#include "platform/system/user_locale.h"

#include "gtest/gtest.h"

namespace platform {
namespace {

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
    const TimeCustoms customs = CustomsOfForms(form.time, form.date);
    EXPECT_EQ(customs.twelveHours, form.twelveHours) << form.time;
    EXPECT_EQ(customs.monthFirst, form.monthFirst) << form.date;
  }
}

}  // namespace
}  // namespace platform
