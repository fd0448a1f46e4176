// Dialogs, message boxes, menus and accelerators.
#include <gtest/gtest.h>

#include "desktop/recording_window.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "framework/zarf_dialog.h"
#include "platform/desktop/accelerator.h"
#include "platform/desktop/application.h"
#include "platform/desktop/menu.h"
#include "platform/desktop/message_box.h"
#include "support/desktop_driver.h"
#include "support/windows.h"

void RegisterTestDialogs();

namespace {

constexpr int kTemplate = 9000;
constexpr int kLine = 100;
constexpr int kText = 101;
constexpr int kCombo = 102;

class TestDialog : public ZarfDialog {
 public:
  LRESULT WindowProc(const MessageRecord& record) override {
    messages.push_back(record.message);
    return ZarfDialog::WindowProc(record);
  }
  LRESULT OnInitDialog(const MessageRecord&) override {
    if (initialise) initialise();
    return 1;
  }
  LRESULT OnCommand(const MessageRecord& record) override {
    commands.push_back(record.wParam);
    return ZarfDialog::OnCommand(record);
  }
  std::string Text(int id) { return tests::TextOf(hwnd, id); }

  std::function<void()> initialise;
  std::vector<UINT> messages;
  std::vector<WPARAM> commands;
};

class Dialog : public testing::Test {
 protected:
  void SetUp() override {
    RegisterTestDialogs();
    ASSERT_TRUE(owner.CreateTop());
  }
  // Runs the dialog and, while it is open, `act`.
  int Run(const std::function<void(HWND)>& act) {
    driver.WhenDialogOpens(act);
    return dialog.Open(&owner, kTemplate);
  }
  // The same, and leaves it by Escape.
  void Look(const std::function<void(HWND)>& act) {
    EXPECT_EQ(Run([&](HWND handle) { act(handle), driver.Press(handle, VK_ESCAPE); }), 0);
  }

  DesktopDriver driver;
  RecordingWindow owner{"DialogOwner"};
  TestDialog dialog;
};

TEST_F(Dialog, EndsByKeysButtonsAndClosing) {
  EXPECT_EQ(Run([&](HWND handle) { driver.Press(handle, VK_RETURN); }), 1);
  EXPECT_EQ(std::count(dialog.messages.begin(), dialog.messages.end(), ZWM_AFTERCREATE), 1);
  EXPECT_EQ(dialog.Open(&owner, 12345), -1);
  Look([&](HWND handle) {
    const RECT opened = tests::PlaceOf(handle);
    MoveWindow(handle, opened.left, opened.top, Width(opened) + 50, Height(opened) - 50);
    EXPECT_EQ(tests::PlaceOf(handle), opened) << "it keeps its size";
  });
  EXPECT_EQ(Run([&](HWND handle) { driver.Press(handle, VK_ESCAPE); }), 0);
  EXPECT_EQ(Run([&](HWND handle) { PostMessage(handle, WM_CLOSE, 0, 0); }), 0);
  EXPECT_EQ(Run([&](HWND handle) { driver.ClickControl(handle, IDCANCEL); }), 0);
  dialog.initialise = [&] { dialog.EndDialog(7); };
  EXPECT_EQ(dialog.Open(&owner, kTemplate), 7);
}

TEST_F(Dialog, EditsReportChangesAndKeepToTheirLimits) {
  dialog.initialise = [&] {
    dialog.SendItemMessage(kLine, EM_LIMITTEXT, 5, 0);
    dialog.SendItemMessage(kText, EM_LIMITTEXT, 6, 0);
  };
  Look([&](HWND handle) {
    EXPECT_EQ(GetClassName(GetDlgItem(handle, kLine)), "Edit");
    driver.TypeInto(handle, kLine, "abcdefgh");
    EXPECT_EQ(dialog.Text(kLine), "abcde");
    EXPECT_EQ(dialog.commands.back(), MakeWParam(kLine, EN_CHANGE));
    driver.TypeInto(handle, kText, "ab");
    driver.Press(handle, VK_RETURN);
    driver.Type(handle, "cdef");
    driver.WaitUntil([&] { return dialog.Text(kText) == "ab\r\ncd"; });
    EXPECT_EQ(dialog.SendItemMessage(kText, WM_GETTEXTLENGTH, 0, 0), 6);
  });
}

TEST_F(Dialog, WhatCannotBeStoredIsLeftOutAndNamed) {
  const struct {
    int control;
    const char* pasted;
    const char* kept;  // in place of "old"
    const char* tip;
  } cases[] = {
      {kLine, "a\tb\r\nc\nd", "a b c d", ""},
      {kText, "a\tb\nc", "a\tb\r\nc", ""},
      {kText, "", "old", ""},
      {kLine, "Ji\u0159\u00ed \U0001F600\u0159", "Ji\xED ",
       "The characters \"\u0159\", \"\U0001F600\" cannot be stored."},
      {kText, "Ji\u0159\u00ed\n", "Ji\xED\r\n", "The character \"\u0159\" cannot be stored."},
      {kCombo, "\u4e00\u4e8c\u4e09x\u56db\u4e94\u516d", "x",
       "The characters \"\u4e00\", \"\u4e8c\", \"\u4e09\", \"\u56db\", \"\u4e94\" and others cannot be "
       "stored."},
      {kLine, "\u0159", "old", "The character \"\u0159\" cannot be stored."},
  };
  Look([&](HWND handle) {
    for (const auto& [control, pasted, kept, tip] : cases) {
      driver.TypeInto(handle, control, "old");
      driver.Press(handle, 'A', MK_CONTROL);
      driver.PasteInto(handle, control, pasted);
      driver.ProcessEvents();
      EXPECT_EQ(dialog.Text(control), kept) << pasted;
      EXPECT_EQ(driver.ShownTip(), tip) << pasted;
      if (dialog.Text(control) != "old") driver.Press(handle, 'Z', MK_CONTROL);
      driver.ProcessEvents();
      EXPECT_EQ(dialog.Text(control), "old") << "taken back: " << pasted;
    }
  });
}

TEST_F(Dialog, UntouchedTextsComeBackByteForByte) {
  const std::string odd = "one\ntwo\rthree\x81\x80 tail longer than the limit";
  dialog.initialise = [&] {
    for (const int id : {kLine, kText}) {
      dialog.SendItemMessage(id, EM_LIMITTEXT, 10, 0);
      dialog.SetItemText(id, odd.c_str());
    }
  };
  Look([&](HWND handle) {
    driver.Wait(20);
    EXPECT_EQ(dialog.Text(kLine), odd);
    EXPECT_EQ(dialog.Text(kText), odd);
    driver.TypeInto(handle, kLine, "x");
    EXPECT_EQ(dialog.Text(kLine), "x");
    char small[4];
    EXPECT_EQ(GetDlgItemText(handle, kText, small, sizeof small), 3);
    EXPECT_STREQ(small, "one");
  });
}

TEST_F(Dialog, MessageBoxesAskAndTell) {
  driver.AnswerMessageBox("Do you want to delete", IDYES);
  EXPECT_TRUE(AskYesNo(&owner, 105));
  driver.AnswerMessageBox("Do you want to delete", IDNO);
  EXPECT_FALSE(AskYesNo(&owner, 105));
  driver.AnswerMessageBox("<b>plain</b> text", IDOK);
  ShowInfo(&owner, "<b>plain</b> text");
  char buffer[8];
  EXPECT_STREQ(LoadText(buffer, 2010, sizeof buffer), "January");
  EXPECT_STREQ(LoadText(buffer, 2018, sizeof buffer), "Septemb");
}

}  // namespace
