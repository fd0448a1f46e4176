// The dialog "Repeat": what it shows for each kind of rule and what OK stores.
#include "calendar/repeat_dialog.h"

#include <gtest/gtest.h>

#include <cstring>

#include "desktop/picker_steps.h"
#include "resources/resources.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

constexpr int kNone = 100;
constexpr int kDay = 101;
constexpr int kWeek = 102;
constexpr int kMonth = 103;
constexpr int kYear = 104;
constexpr int kEvery = 203;
constexpr int kUnit = 204;
constexpr int kNoEnd = 206;
constexpr int kEnd = 207;
constexpr int kEndButton = 208;
constexpr int kSunday = 210;
constexpr int kWednesday = 213;

class RepeatDialogTest : public testing::Test {
 protected:
  RepeatDialogTest() {
    static const bool registered = (RegisterResources(), true);
    static_cast<void>(registered);
  }

  bool Run(std::function<void(HWND)> script) {
    driver.WhenDialogOpens(std::move(script));
    return RepeatDialog(record).Run(nullptr);
  }
  // Which of the controls from "Every" to "Sat" can be seen: "Every" and "End on" with theirs, the weekdays.
  static std::string Shown(HWND dialog) {
    std::string shown;
    for (int id = 202; id <= 216; ++id) shown += IsWindowVisible(GetDlgItem(dialog, id)) ? 'x' : '.';
    return shown;
  }
  static std::string TextOf(HWND dialog, int id) {
    char text[64];
    GetDlgItemText(dialog, id, text, sizeof text);
    return text;
  }
  static std::string Weekdays(HWND dialog) {
    std::string checked;
    for (int i = 0; i < 7; ++i) checked += IsDlgButtonChecked(dialog, kSunday + i) ? "SMTWTFS"[i] : '-';
    return checked;
  }
  static bool Enabled(HWND dialog, int id) { return IsWindowEnabled(GetDlgItem(dialog, id)); }
  void Ok(HWND dialog) { driver.ClickControl(dialog, IDOK); }
  void ExpectRule(const core::RepeatRule& rule) {
    EXPECT_EQ(std::memcmp(&record.repeat, &rule, sizeof rule), 0);
  }

  DesktopDriver driver;
  core::Appointment record = Entry().On(3, 3, 2004).appointment;  // a Wednesday
};

TEST_F(RepeatDialogTest, EachTypeShowsItsControlsAndStoresItsRule) {
  struct Case {
    int type;
    const char* shown;
    const char* unit;
    core::RepeatRule rule;
  };
  const Case cases[] = {
      {kDay, "xxxxxxx........", "Day(s)", {core::kRepeatDaily, core::kNoEndDate, 3, 0}},
      {kWeek, "xxxxxxxxxxxxxxx", "Week(s)", {core::kRepeatWeekly, core::kNoEndDate, 3, 8}},
      {kMonth, "xxxxxxx........", "Month(s)", {core::kRepeatMonthly, core::kNoEndDate, 3, 3}},
      {kYear, "xxxxxxx........", "Year(s)", {core::kRepeatYearly, core::kNoEndDate, 3, 3 << 16 | 3}},
      {kNone, "...............", "", {}},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.type);
    record.repeat = {};
    EXPECT_TRUE(Run([&](HWND dialog) {
      EXPECT_EQ(Shown(dialog), "...............");
      EXPECT_EQ(SendDlgItemMessage(dialog, kEvery, CB_GETCOUNT, 0, 0), 99);
      driver.ClickControl(dialog, kDay);
      driver.TypeInto(dialog, kEvery, "3");
      driver.ClickControl(dialog, one.type);
      EXPECT_EQ(Shown(dialog), one.shown);
      EXPECT_EQ(TextOf(dialog, kUnit), one.unit);
      Ok(dialog);
    }));
    ExpectRule(one.rule);
  }
}

TEST_F(RepeatDialogTest, ByKeyboardAlone) {
  EXPECT_TRUE(Run([&](HWND dialog) {
    for (int i = 0; i < 2; ++i) driver.Press(dialog, VK_DOWN);  // None, Day, Week
    driver.Press(dialog, VK_TAB);
    driver.Type(dialog, "12");
    for (int i = 0; i < 2; ++i) driver.Press(dialog, VK_TAB);  // no end date, Sunday
    driver.Press(dialog, ' ');
    driver.Press(dialog, VK_RETURN);
  }));
  ExpectRule({core::kRepeatWeekly, core::kNoEndDate, 12, 0x09});
}

TEST_F(RepeatDialogTest, OpensWithTheRuleAndKeepsAWeekday) {
  record.repeat = {core::kRepeatWeekly, {10, 3, 2004}, 99, 0x22};
  EXPECT_FALSE(Run([&](HWND dialog) {
    EXPECT_TRUE(IsDlgButtonChecked(dialog, kWeek));
    EXPECT_EQ(Weekdays(dialog), "-M---F-");
    EXPECT_EQ(SendDlgItemMessage(dialog, kEvery, CB_GETCURSEL, 0, 0), 98);
    EXPECT_TRUE(IsDlgButtonChecked(dialog, kEnd) && Enabled(dialog, kEndButton));
    EXPECT_EQ(TextOf(dialog, kEndButton), "10/3/2004");
    driver.ClickControl(dialog, kSunday + 1);
    driver.ClickControl(dialog, kSunday + 5);
    EXPECT_EQ(Weekdays(dialog), "-----F-") << "the last one stays";
    driver.ClickControl(dialog, kNoEnd);
    EXPECT_FALSE(Enabled(dialog, kEndButton));
    driver.Press(dialog, VK_ESCAPE);
  }));
  ExpectRule({core::kRepeatWeekly, {10, 3, 2004}, 99, 0x22});

  // A damaged rule is shown as far as it goes; one without an end offers the appointment's date.
  record.repeat = {77, core::kNoEndDate, 4'000'000'000, 0};
  EXPECT_TRUE(Run([&](HWND dialog) {
    EXPECT_TRUE(IsDlgButtonChecked(dialog, kNone) && IsDlgButtonChecked(dialog, kNoEnd));
    EXPECT_EQ(Shown(dialog), "...............");
    driver.ClickControl(dialog, kWeek);
    EXPECT_EQ(Weekdays(dialog), "---W---");
    driver.ClickControl(dialog, kWednesday);
    EXPECT_EQ(Weekdays(dialog), "---W---");
    EXPECT_EQ(TextOf(dialog, kEndButton), "3/3/2004");
    EXPECT_FALSE(Enabled(dialog, kEndButton));
    Ok(dialog);
  }));
  ExpectRule({core::kRepeatWeekly, core::kNoEndDate, 99, 8});
}

TEST_F(RepeatDialogTest, AnEndBeforeTheDateIsRefused) {
  EXPECT_TRUE(Run([&](HWND dialog) {
    driver.ClickControl(dialog, kDay);
    driver.ClickControl(dialog, kEnd);
    driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, -1); });
    driver.AnswerMessageBox("The\r\nend date must occur after the start date.", IDOK);
    driver.ClickControl(dialog, kEndButton);
    EXPECT_EQ(TextOf(dialog, kEndButton), "3/3/2004");
    driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, 0); });  // the same day will do
    driver.ClickControl(dialog, kEndButton);
    driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, 1); });
    driver.ClickControl(dialog, kEndButton);
    EXPECT_EQ(TextOf(dialog, kEndButton), "3/4/2004");
    Ok(dialog);
  }));
  ExpectRule({core::kRepeatDaily, {3, 4, 2004}, 1, 0});
}

}  // namespace
}  // namespace tests
