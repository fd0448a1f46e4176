// The list of categories in the running program: its menu, the dialogs that edit it, and what the file holds
// afterwards.
#include <gtest/gtest.h>

#include <cerrno>

#include "calendar/dialogs/categories_dialog.h"
#include "platform/desktop/message_box.h"
#include "support/calendar_program.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

constexpr const char* kEdit = "Edit Categories";

using Texts = std::vector<std::string>;

Texts Lines(HWND dialog) {
  Texts lines;
  for (LRESULT i = 0; i < SendDlgItemMessage(dialog, kCategoryList, LB_GETCOUNT, 0, 0); ++i) {
    char text[256];
    SendDlgItemMessage(dialog, kCategoryList, LB_GETTEXT, static_cast<WPARAM>(i),
                       reinterpret_cast<LPARAM>(text));
    lines.emplace_back(text);
  }
  return lines;
}

class CategoriesTest : public testing::Test {
 protected:
  CategoriesTest() {
    calendar.Add(Entry("Call").On(14, 3, 2004).Category("Calls"));
    calendar.Add(Entry("Other").On(14, 3, 2004).At(10, 0));
  }

  // Chooses "Edit Categories" and goes through the dialog.
  void Edit(std::function<void(HWND)> script) {
    driver.ChooseMenuItem(kEdit);
    driver.WhenDialogOpens(std::move(script));
    driver.Click(program.Panel().Categories().Handle(), {150, 13});
    driver.ProcessEvents();
  }
  void Add(HWND dialog, const std::string& name) {
    driver.WhenDialogOpens([this, name](HWND newDialog) {
      EXPECT_FALSE(Enabled(newDialog, IDOK));
      driver.Press(newDialog, VK_RETURN);  // there is no name yet
      driver.TypeInto(newDialog, kNewCategoryEdit, name);
      driver.Press(newDialog, VK_RETURN);
    });
    driver.ClickControl(dialog, kNewCategoryButton);
  }
  void Ok(HWND dialog) { driver.ClickControl(dialog, IDOK); }
  core::CategoryList Stored() {
    core::CategoryList list;
    EXPECT_TRUE(core::ReadCategories(calendar.file, list));
    return list;
  }
  // What the menu offers when it is opened next, without what is always there.
  Texts Offered() {
    program.ChooseCategory("");
    const Texts menu = driver.LastMenu();
    EXPECT_EQ(menu.front(), "All Categories");
    EXPECT_EQ(menu.back(), kEdit);
    return {menu.begin() + 2, menu.end() - 2};
  }

  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  TemporaryCalendar calendar;
};

TEST_F(CategoriesTest, AreAddedDeletedAndStoredInAlphabeticalOrder) {
  const std::string before = calendar.Bytes();
  program.Run(calendar.Path(), [&] {
    program.ChooseCategory("Calls");
    Edit([&](HWND dialog) {
      Add(dialog, "In vain");
      driver.Press(dialog, VK_ESCAPE);
    });
    EXPECT_EQ(Stored().names.size(), 15U);
    EXPECT_EQ(program.Subjects(), Texts{"Call"});
    Edit([&](HWND dialog) {
      EXPECT_EQ(Lines(dialog)[4], "Holiday");
      EXPECT_FALSE(Enabled(dialog, kDeleteCategoryButton));
      Add(dialog, "personal");  // there is one already
      Add(dialog, "\xC4u\xDF" + std::string(40, 'e'));
      EXPECT_FALSE(Enabled(dialog, kDeleteCategoryButton));
      // The first key takes the line with the focus mark, by which alone the first line can be had.
      SetFocus(GetDlgItem(dialog, kCategoryList));
      driver.Press(dialog, VK_DOWN);
      EXPECT_TRUE(Enabled(dialog, kDeleteCategoryButton));
      EXPECT_EQ(SendMessage(GetDlgItem(dialog, kCategoryList), LB_GETCURSEL, 0, 0), 0);
      driver.Press(dialog, VK_DOWN);
      EXPECT_EQ(SendMessage(GetDlgItem(dialog, kCategoryList), LB_GETCURSEL, 0, 0), 1);
      driver.Click(GetDlgItem(dialog, kCategoryList), {20, 8});
      driver.AnswerMessageBox("Do you want to delete this category ?", IDNO);
      driver.ClickControl(dialog, kDeleteCategoryButton);
      EXPECT_EQ(Lines(dialog).size(), 17U);
      driver.AnswerMessageBox("Do you want to delete this category ?", IDYES);
      driver.ClickControl(dialog, kDeleteCategoryButton);
      EXPECT_EQ(Lines(dialog).front(), "Clients");
      EXPECT_FALSE(Enabled(dialog, kDeleteCategoryButton));
      Ok(dialog);
    });
    const Texts expected{"Clients",  "Expenses", "Follow up", "Holiday",
                         "Ideas",    "Issues",   "Meetings",  "People",
                         "Personal", "personal", "Projects",  "Public",
                         "Test",     "Travel",   "Vacation",  "\xC4u\xDF" + std::string(26, 'e')};
    EXPECT_EQ(Stored().names, expected);
    EXPECT_EQ(Offered(), expected);
    EXPECT_EQ(program.Session().Filter(), "");
    EXPECT_STREQ(program.Panel().Categories().Caption(), "All Categories");
    EXPECT_EQ(program.Subjects(), (Texts{"Call", "Other"}));
  });
  EXPECT_EQ(calendar.Bytes().substr(2625), before.substr(2625)) << "a record was touched";
}

TEST_F(CategoriesTest, OfMoreThanFitTheFirstAreOffered) {
  program.Run(calendar.Path(), [&] {
    core::CategoryBlock block = core::CategoriesFromNames(Texts(29, "Many"));
    block.count = 2'000'000'000;  // a file may say anything
    core::WriteText(block.entries[29].name, "thirtieth");
    ASSERT_EQ(calendar.file.WriteCategoryBlock(block), core::Result::kDone);
    EXPECT_EQ(Offered().size(), 29U);
    Edit([&](HWND dialog) {
      EXPECT_EQ(Lines(dialog).size(), 29U);
      Ok(dialog);
    });
    EXPECT_EQ(Stored().count, 29U);
  });
}

TEST_F(CategoriesTest, AnotherCopysListIsOfferedWhenTheMenuOpensNext) {
  program.Run(calendar.Path(), [&] {
    program.ChooseCategory("Calls");
    ASSERT_EQ(core::StoreCategories(calendar.file, {"Rowing"}), core::CommandResult::kDone);
    EXPECT_EQ(Offered(), Texts{"Rowing"});
    EXPECT_STREQ(program.Panel().Categories().Caption(), "Calls") << "that is what is shown";
    EXPECT_EQ(program.Subjects(), Texts{"Call"});
    program.ChooseCategory("Rowing");
    EXPECT_TRUE(program.Subjects().empty());
  });
}

TEST_F(CategoriesTest, WhatCannotBeWrittenIsToldAndStays) {
  program.Run(calendar.Path(), [&] {
    FaultyCalls faults;
    Edit([&](HWND dialog) {
      Add(dialog, "Kept");
      faults.Fail(FaultyCalls::kWrite, faults.Count(FaultyCalls::kWrite) + 1, ENOSPC);
      driver.AnswerMessageBox("The categories were not saved.", IDOK);
      Ok(dialog);
      EXPECT_EQ(Stored().names.size(), 15U);
      Ok(dialog);
    });
    EXPECT_EQ(Stored().names.size(), 16U);
    // A list that cannot be read is not taken for an empty one, which OK would store.
    faults.Fail(FaultyCalls::kRead, faults.Count(FaultyCalls::kRead) + 1, EIO, FaultyCalls::kForEver);
    driver.AnswerMessageBox("Can't read \"" + calendar.Path() + "\".", IDOK);
    program.Panel().Categories().OnCategoryMenuCommand(530, "");
  });
}

}  // namespace
}  // namespace tests
