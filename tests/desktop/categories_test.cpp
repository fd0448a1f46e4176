// The list of categories in the running program: its menu, the dialogs that edit it, and what the file holds
// afterwards.
#include <gtest/gtest.h>

#include <cerrno>

#include "platform/desktop/message_box.h"
#include "support/calendar_program.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

constexpr int kList = 100;
constexpr int kNew = 101;
constexpr int kDelete = 102;
constexpr int kName = 100;
constexpr const char* kEdit = "Edit Categories";

using Texts = std::vector<std::string>;

Texts Lines(HWND dialog) {
  Texts lines;
  for (LRESULT i = 0; i < SendDlgItemMessage(dialog, kList, LB_GETCOUNT, 0, 0); ++i) {
    char text[256];
    SendDlgItemMessage(dialog, kList, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    lines.emplace_back(text);
  }
  return lines;
}

// For answers that were given before.
void OpenMenu(CalendarProgram& program) {
  program.driver.Click(program.Panel().Categories().Handle(), {150, 13});
  program.driver.ProcessEvents();
}

class CategoriesTest : public testing::Test {
 protected:
  CategoriesTest() {
    calendar.Add(Entry("Call").On(14, 3, 2004).Category("Calls"));
    calendar.Add(Entry("Other").On(14, 3, 2004).At(10, 0));
  }

  // Chooses "Edit Categories" and goes through the dialog.
  void Edit(std::function<void(HWND)> script) {
    program.driver.ChooseMenuItem(kEdit);
    program.driver.WhenDialogOpens(std::move(script));
    OpenMenu(program);
  }
  void Add(HWND dialog, const std::string& name) {
    program.driver.WhenDialogOpens([this, name](HWND newDialog) {
      EXPECT_FALSE(IsWindowEnabled(GetDlgItem(newDialog, IDOK)));
      program.driver.Press(newDialog, VK_RETURN);  // there is no name yet
      program.driver.TypeInto(newDialog, kName, name);
      program.driver.Press(newDialog, VK_RETURN);
    });
    program.driver.ClickControl(dialog, kNew);
  }
  void Ok(HWND dialog) { program.driver.ClickControl(dialog, IDOK); }
  core::CategoryList Stored() {
    core::CategoryList list;
    EXPECT_TRUE(core::ReadCategories(calendar.file, list));
    return list;
  }
  // What the menu offers when it is opened next, without what is always there.
  Texts Offered() {
    program.ChooseCategory("");
    const Texts menu = program.driver.LastMenu();
    EXPECT_EQ(menu.front(), "All Categories");
    EXPECT_EQ(menu.back(), kEdit);
    return {menu.begin() + 2, menu.end() - 2};
  }

  CalendarProgram program;
  TemporaryCalendar calendar;
};

TEST_F(CategoriesTest, AreAddedDeletedAndStoredInAlphabeticalOrder) {
  const std::string before = calendar.Bytes();
  program.Run(calendar.Path(), [&] {
    program.ChooseCategory("Calls");
    Edit([&](HWND dialog) {
      const HWND remove = GetDlgItem(dialog, kDelete);
      EXPECT_EQ(Lines(dialog)[4], "Holiday");
      EXPECT_FALSE(IsWindowEnabled(remove));
      Add(dialog, "personal");  // there is one already
      Add(dialog, "\xC4u\xDF" + std::string(40, 'e'));
      EXPECT_FALSE(IsWindowEnabled(remove));
      // The first key takes the line with the focus mark, by which alone the first line can be had.
      SetFocus(GetDlgItem(dialog, kList));
      program.driver.Press(dialog, VK_DOWN);
      EXPECT_TRUE(IsWindowEnabled(remove));
      EXPECT_EQ(SendMessage(GetDlgItem(dialog, kList), LB_GETCURSEL, 0, 0), 0);
      program.driver.Press(dialog, VK_DOWN);
      EXPECT_EQ(SendMessage(GetDlgItem(dialog, kList), LB_GETCURSEL, 0, 0), 1);
      program.driver.Click(GetDlgItem(dialog, kList), {20, 8});
      program.driver.AnswerMessageBox("Do you want to delete this category ?", IDNO);
      program.driver.ClickControl(dialog, kDelete);
      EXPECT_EQ(Lines(dialog).size(), 17U);
      program.driver.AnswerMessageBox("Do you want to delete this category ?", IDYES);
      program.driver.ClickControl(dialog, kDelete);
      EXPECT_EQ(Lines(dialog).front(), "Clients");
      EXPECT_FALSE(IsWindowEnabled(remove));
      Ok(dialog);
    });
    const Texts expected{"Clients",  "Expenses", "Follow up", "Holiday",
                         "Ideas",    "Issues",   "Meetings",  "People",
                         "Personal", "personal", "Projects",  "Public",
                         "Test",     "Travel",   "Vacation",  "\xC4u\xDF" + std::string(26, 'e')};
    EXPECT_EQ(Stored().names, expected);
    EXPECT_EQ(Offered(), expected);
    EXPECT_EQ(program.Panel().CategoryFilter(), "");
    EXPECT_STREQ(program.Panel().Categories().Caption(), "All Categories");
    EXPECT_EQ(program.Subjects(), (Texts{"Call", "Other"}));
  });
  EXPECT_EQ(calendar.Bytes().substr(2625), before.substr(2625)) << "a record was touched";
}

TEST_F(CategoriesTest, CancelLeavesListAndFilterAlone) {
  const core::CategoryList before = Stored();
  program.Run(calendar.Path(), [&] {
    program.ChooseCategory("Calls");
    Edit([&](HWND dialog) {
      EXPECT_STREQ(program.Panel().Categories().Caption(), "Calls");
      Add(dialog, "In vain");
      program.driver.Press(dialog, VK_ESCAPE);
    });
    EXPECT_EQ(program.Subjects(), Texts{"Call"});
    EXPECT_STREQ(program.Panel().Categories().Caption(), "Calls");
  });
  EXPECT_EQ(Stored().names, before.names);
}

TEST_F(CategoriesTest, OfMoreThanFitTheFirstAreStoredAndAllAreCounted) {
  program.Run(calendar.Path(), [&] {
    Edit([&](HWND dialog) {
      for (int i = 0; i < 16; ++i) Add(dialog, {'Z', static_cast<char>('a' + i)});
      Ok(dialog);
    });
    EXPECT_EQ(Stored().count, 31U);
    EXPECT_EQ(Stored().names.size(), 29U);
    EXPECT_EQ(Offered().back(), "Zn");
    // A file may say anything.
    core::CategoryBlock block;
    ASSERT_TRUE(calendar.file.ReadCategoryBlock(block));
    block.count = 2'000'000'000;
    core::WriteText(block.entries[29].name, "thirtieth");
    ASSERT_TRUE(calendar.file.WriteCategoryBlock(block));
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
    ASSERT_EQ(core::StoreCategories(calendar.file, {"Rowing"}), core::Result::kDone);
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
      program.driver.AnswerMessageBox("The categories were not saved.", IDOK);
      Ok(dialog);
      EXPECT_EQ(Stored().names.size(), 15U);
      Ok(dialog);
    });
    EXPECT_EQ(Stored().names.size(), 16U);
    // A list that cannot be read is not taken for an empty one, which OK would store.
    faults.Fail(FaultyCalls::kRead, faults.Count(FaultyCalls::kRead) + 1, EIO, FaultyCalls::kForEver);
    program.driver.AnswerMessageBox("Can't read \"" + calendar.Path() + "\".", IDOK);
    program.Panel().Categories().OnCategoryMenuCommand(530, "");
  });
}

TEST(CategoriesOfAReader, AreNotEdited) {
  CalendarProgram program;
  TemporaryCalendar calendar({"Owner", "Assistant", "Reader"});
  program.driver.WhenDialogOpens([&](HWND dialog) {
    program.driver.TypeInto(dialog, 100, "Reader");
    program.driver.Press(dialog, VK_RETURN);
  });
  program.Run(calendar.Path(), [&] {
    const std::string before = calendar.Bytes();
    program.driver.ChooseMenuItem(kEdit);
    program.driver.AnswerMessageBox("You don't have permission for this action.", IDOK);
    OpenMenu(program);
    core::RecordFile reader(calendar.Path(), "Reader");
    EXPECT_EQ(core::StoreCategories(reader, {"Mine"}), core::Result::kRefused);
    reader.Close();
    EXPECT_EQ(calendar.Bytes(), before);
  });
}

}  // namespace
}  // namespace tests
