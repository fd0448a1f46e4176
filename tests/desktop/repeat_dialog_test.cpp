// The dialog "Repeat": what it shows for each kind of rule and what OK stores.
#include "calendar/dialogs/repeat_dialog.h"

#include <gtest/gtest.h>

#include <cstring>

#include "desktop/picker_steps.h"
#include "resources/resources.h"
#include "support/era.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

class RepeatDialogTest : public testing::Test {
 protected:
  RepeatDialogTest() { RegisterResources(); }

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
  static std::string Weekdays(HWND dialog) {
    std::string checked;
    for (int i = 0; i < 7; ++i)
      checked += IsDlgButtonChecked(dialog, RepeatDialog::kFirstWeekdayBox + i) ? "SMTWTFS"[i] : '-';
    return checked;
  }
  void Ok(HWND dialog) { driver.ClickControl(dialog, IDOK); }
  void ExpectRule(const core::RepeatRule& rule) {
    EXPECT_EQ(std::memcmp(&record.repeat, &rule, sizeof rule), 0);
  }

  DesktopDriver driver;
  core::Appointment record = Entry().On(3, 3, 2004).appointment;  // a Wednesday
};

TEST_F(RepeatDialogTest, EachTypeShowsItsControlsAndStoresItsRule) {
  constexpr const char* kNothing = "...............";
  constexpr const char* kEvery = "xxxxxxx........";
  constexpr core::Date kNever = core::kNoEndDate;
  struct Case {
    int type;
    const char* shown;
    const char* unit;
    core::RepeatRule rule;
  };
  const Case cases[] = {
      {RepeatDialog::kDailyRadio, kEvery, "Day(s)", {core::kRepeatDaily, kNever, 3, 0}},
      {RepeatDialog::kWeeklyRadio, "xxxxxxxxxxxxxxx", "Week(s)", {core::kRepeatWeekly, kNever, 3, 8}},
      {RepeatDialog::kMonthlyRadio, kEvery, "Month(s)", {core::kRepeatMonthly, kNever, 3, 3}},
      {RepeatDialog::kYearlyRadio, kEvery, "Year(s)", {core::kRepeatYearly, kNever, 3, 3 << 16 | 3}},
      {RepeatDialog::kNoneRadio, kNothing, "", {}},
  };
  for (const Case& one : cases) {
    SCOPED_TRACE(one.type);
    record.repeat = {};
    EXPECT_TRUE(Run([&](HWND dialog) {
      EXPECT_EQ(Shown(dialog), kNothing);
      EXPECT_EQ(SendDlgItemMessage(dialog, RepeatDialog::kEveryBox, CB_GETCOUNT, 0, 0), 99);
      driver.ClickControl(dialog, RepeatDialog::kDailyRadio);
      driver.TypeInto(dialog, RepeatDialog::kEveryBox, "3");
      driver.ClickControl(dialog, one.type);
      EXPECT_EQ(Shown(dialog), one.shown);
      EXPECT_EQ(TextOf(dialog, RepeatDialog::kUnitLabel), one.unit);
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
    EXPECT_TRUE(IsDlgButtonChecked(dialog, RepeatDialog::kWeeklyRadio));
    EXPECT_EQ(Weekdays(dialog), "-M---F-");
    EXPECT_EQ(SendDlgItemMessage(dialog, RepeatDialog::kEveryBox, CB_GETCURSEL, 0, 0), 98);
    EXPECT_TRUE(IsDlgButtonChecked(dialog, RepeatDialog::kEndRadio) &&
                Enabled(dialog, RepeatDialog::kEndDateButton));
    EXPECT_EQ(TextOf(dialog, RepeatDialog::kEndDateButton), "10/3/2004");
    driver.ClickControl(dialog, RepeatDialog::kFirstWeekdayBox + 1);
    driver.ClickControl(dialog, RepeatDialog::kFirstWeekdayBox + 5);
    EXPECT_EQ(Weekdays(dialog), "-----F-") << "the last one stays";
    driver.ClickControl(dialog, RepeatDialog::kNoEndRadio);
    EXPECT_FALSE(Enabled(dialog, RepeatDialog::kEndDateButton));
    driver.Press(dialog, VK_ESCAPE);
  }));
  ExpectRule({core::kRepeatWeekly, {10, 3, 2004}, 99, 0x22});
}

TEST_F(RepeatDialogTest, AnEndBeforeTheDateIsRefused) {
  EXPECT_TRUE(Run([&](HWND dialog) {
    driver.ClickControl(dialog, RepeatDialog::kDailyRadio);
    driver.ClickControl(dialog, RepeatDialog::kEndRadio);
    driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, -1); });
    driver.AnswerMessageBox("The\r\nend date must occur after the start date.", IDOK);
    driver.ClickControl(dialog, RepeatDialog::kEndDateButton);
    EXPECT_EQ(TextOf(dialog, RepeatDialog::kEndDateButton), "3/3/2004");
    driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, 0); });  // the same day will do
    driver.ClickControl(dialog, RepeatDialog::kEndDateButton);
    driver.WhenDialogOpens([&](HWND picker) { PickMonth(driver, picker, 1); });
    driver.ClickControl(dialog, RepeatDialog::kEndDateButton);
    EXPECT_EQ(TextOf(dialog, RepeatDialog::kEndDateButton), "3/4/2004");
    Ok(dialog);
  }));
  ExpectRule({core::kRepeatDaily, {3, 4, 2004}, 1, 0});
}

TEST_F(RepeatDialogTest, AnEndOnTheDayThatIsStoredForNoneIsRefused) {
  const Era era(core::kLateLastYear);
  record.date = {30, 11, 2020};
  record.repeat = {core::kRepeatDaily, {30, 12, 2020}, 1, 0};
  EXPECT_FALSE(Run([&](HWND dialog) {
    driver.WhenDialogOpens([&](HWND picker) {
      driver.Press(picker, VK_RIGHT);
      driver.ClickControl(picker, IDOK);
    });
    driver.ClickControl(dialog, RepeatDialog::kEndDateButton);
    EXPECT_EQ(TextOf(dialog, RepeatDialog::kEndDateButton), "31/12/2020");
    driver.AnswerMessageBox("Repeats cannot end on 31/12/2020", IDOK);
    Ok(dialog);
    driver.Press(dialog, VK_ESCAPE);
  }));
}

}  // namespace
}  // namespace tests
