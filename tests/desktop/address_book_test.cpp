// The address book's dialogs, and "With".
#include <gtest/gtest.h>

#include <filesystem>

#include "addressbook/address_book_window.h"
#include "addressbook/contact_chooser.h"
#include "addressbook/contact_dialog.h"
#include "addressbook/with_dialog.h"
#include "calendar/dialogs/appointment_editor.h"
#include "core/contacts/external_contacts.h"
#include "framework/fonts.h"
#include "framework/password_dialog.h"
#include "platform/desktop/message_box.h"
#include "support/calendar_program.h"
#include "support/external_file.h"
#include "support/recording_dc.h"
#include "support/screen_reader.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

using Texts = std::vector<std::string>;

HWND ListIn(HWND dialog) {
  const RECT area = PlaceOf(GetDlgItem(dialog, ContactsDialog::kContactList));
  return WindowFromPoint({area.left + 5, area.top + 5});
}

// "name, address" of each row, the selected one after a star.
Texts Rows(HWND dialog) {
  Texts rows;
  AccessiblePart list;
  ObjectFromHandle(ListIn(dialog))->Describe(kWholeWindow, &list);
  for (int row = 0; row < list.items; ++row) {
    AccessiblePart part;
    ObjectFromHandle(ListIn(dialog))->Describe(row, &part);
    rows.push_back((row == list.currentItem ? "*" : "") + part.name);
  }
  return rows;
}

class AddressBookTest : public testing::Test {
 protected:
  AddressBookTest() {
    std::filesystem::remove_all(path);
    std::string message;
    EXPECT_TRUE(other.Open(path, "", message)) << message;
  }

  void Add(const std::string& name, const std::string& email) {
    core::Contact contact;
    EXPECT_EQ(core::AddContact(*other.File(), name, email, contact), core::CommandResult::kDone);
    other.Refresh();
  }
  void RunBook(const std::function<void(HWND)>& script) {
    driver.WhenDialogOpens([=, this](HWND dialog) {
      driver.ProcessEvents();
      script(dialog);
      driver.ClickControl(dialog, IDOK);
    });
    AddressBookCommand(nullptr);
  }
  // The next contact dialog shows a name, and is given another one and an address.
  void Fill(const std::string& shown, const std::string& name, const std::string& email) {
    driver.WhenDialogOpens([=, this](HWND dialog) {
      EXPECT_EQ(TextOf(dialog, ContactDialog::kNameEdit), shown);
      driver.TypeInto(dialog, ContactDialog::kNameEdit, name);
      driver.TypeInto(dialog, ContactDialog::kEmailEdit, email);
      driver.Press(dialog, VK_RETURN);
    });
  }

  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  const std::string path = CalendarProgramFolder() + "/Nameleaf.tb1";
  core::AddressBook other;  // what another copy has open
};

TEST_F(AddressBookTest, ContactsAreAddedChangedAndDeletedByKeys) {
  Add("bob", "b@x");
  Add("Alice", "a@x");
  const TemporaryCalendar calendar;
  const auto script = [&](HWND dialog) {
    driver.ProcessEvents();
    const HWND list = ListIn(dialog);
    EXPECT_EQ(ScreenReader().Read(list), "List \"Contacts\" focused 2");
    Fill("", std::string(60, 'C'), "c@x");
    driver.Press(list, VK_INSERT);
    const std::string carl = std::string(49, 'C') + ", c@x";
    EXPECT_EQ(Rows(dialog), (Texts{"Alice, a@x", "bob, b@x", "*" + carl}));
    driver.Type(list, "B");
    Fill("bob", "Dora", "");  // the address stays
    driver.Press(list, VK_RETURN);
    Add("Bert", "e@x");
    core::FileWatch::OfProcess().Look();
    driver.ProcessEvents();
    EXPECT_EQ(Rows(dialog), (Texts{"Alice, a@x", "Bert, e@x", carl, "*Dora, b@x"}));
    for (const int answer : {IDNO, IDYES}) {
      driver.AnswerMessageBox("Do you want to delete this Nameleaf record ?", answer);
      driver.Press(list, VK_DELETE);
    }
    EXPECT_EQ(Rows(dialog), (Texts{"Alice, a@x", "Bert, e@x", "*" + carl}));
    EXPECT_EQ(GetFocus(), list);
    driver.Press(dialog, VK_ESCAPE);
  };
  program.Run(calendar.Path(), [&] {
    driver.ChooseMenuItem("Nameleaf...");
    driver.WhenDialogOpens(script);
    driver.Press(program.Frame(), 'F', 0, true);
  });
  EXPECT_TRUE(other.Refresh() && other.List().Count() == 3);
}

TEST_F(AddressBookTest, WhatSomebodyEditsIsLeftAloneAndAReaderOnlyAdds) {
  Add("Ann", "a@x");
  Add("Bob", "b@x");
  RunBook([&](HWND dialog) {
    const auto refuse = [&](const char* message) {
      for (const int button : {AddressBookWindow::kEditButton, AddressBookWindow::kDeleteButton}) {
        driver.AnswerMessageBox(message, IDOK);
        driver.ClickControl(dialog, button);
      }
    };
    driver.Press(ListIn(dialog), VK_DOWN);
    core::EditLock lock(*other.File());
    ASSERT_EQ(lock.Take(other.List().KeyAt(0)), core::CommandResult::kDone);
    EXPECT_EQ(Rows(dialog), (Texts{"*locked...", "Bob, b@x"}));
    refuse("Can't edit this entry. It is being edited by another user. Try again.");
    RecordingDc dc;
    static_cast<ZarfWndList*>(ObjectFromHandle(ListIn(dialog)))->Paint(&dc, {0, 0, 200, 60});
    const auto texts = dc.Of(DrawingKind::kText);
    ASSERT_EQ(texts.size(), 3U);
    EXPECT_TRUE(texts[0].text == "locked..." && texts[0].colour == 0 && (texts[0].format & DT_VCENTER));
    EXPECT_TRUE(texts[1].text == "Bob" && texts[1].font == GetFont(FontSans, 700));
    EXPECT_TRUE(texts[2].text == "b@x" && texts[2].font == GetFont(FontSans, 400));
    EXPECT_EQ(texts[2].rect.top, texts[1].rect.top + 10);

    ASSERT_TRUE(other.File()->UpdateHeaderBlock([](core::HeaderBlock& header) {
      core::WriteText(header.ownerPassword, "own");
      core::WriteText(header.assistantPassword, "help");
    }));
    refuse("You don't have permission for this action.");
    Fill("", "Carl", "");
    driver.ClickControl(dialog, AddressBookWindow::kNewButton);
    EXPECT_EQ(Rows(dialog).back(), "*Carl");
  });
}

TEST_F(AddressBookTest, WhatWasTypedGoesToTheBookThatTookThePlaceOfTheOpenOne) {
  Add("Ann", "a@x");
  const std::string twin = path + ".twin";
  std::filesystem::copy_file(path, twin);
  Add("Late", "");
  RunBook([&](HWND dialog) {
    driver.Press(ListIn(dialog), VK_DOWN);
    driver.WhenDialogOpens([&](HWND contact) {
      std::filesystem::rename(twin, path);
      driver.TypeInto(contact, ContactDialog::kNameEdit, "Anna");
      driver.AnswerMessageBox("The contact was not saved.", IDOK);
      Fill("Anna", "Anne", "e@x");
      driver.Press(contact, VK_RETURN);
    });
    driver.ClickControl(dialog, AddressBookWindow::kEditButton);
    EXPECT_EQ(Rows(dialog), Texts{"*Anne, e@x"});
  });
}

TEST_F(AddressBookTest, AContactIsChosenByEnterOrADoubleClick) {
  Add("Ann", "a@x");
  Add("Bob", "b@x");
  std::string name = "none";
  std::string email;
  const auto choose = [&](const std::function<void(HWND)>& script) {
    driver.WhenDialogOpens([&](HWND dialog) {
      driver.ProcessEvents();
      script(ListIn(dialog));
    });
    return ChooseContact(nullptr, name, email);
  };
  EXPECT_FALSE(choose([&](HWND list) {
    driver.Press(list, VK_RETURN);  // nothing is selected: a beep
    driver.Type(list, "a");
    driver.Press(list, VK_ESCAPE);
  }));
  EXPECT_EQ(name, "none");
  EXPECT_TRUE(choose([&](HWND list) {
    driver.Type(list, "a");
    driver.Press(list, VK_RETURN);
  }));
  EXPECT_EQ(name + email, "Anna@x");
  EXPECT_TRUE(choose([&](HWND list) { driver.DoubleClick(list, {20, 40}); }));
  EXPECT_EQ(name + email, "Bobb@x");
}

// Works the dialog "With" of an editor, and answers the subject that it leaves.
std::string SubjectWith(DesktopDriver& driver, const std::function<void(HWND)>& script) {
  const TemporaryCalendar calendar;
  core::Appointment record = Entry("Before").On(14, 3, 2004).appointment;
  driver.WhenDialogOpens([&](HWND editor) {
    driver.WhenDialogOpens(script);
    driver.ClickControl(editor, AppointmentEditor::kWithButton);
    driver.ClickControl(editor, IDOK);
  });
  AppointmentEditor(calendar.file, record, record.date, AppointmentEditor::Mode::kEdit).Run(nullptr);
  return std::string(core::ReadText(record.subject));
}

TEST(With, ProposalsFollowTheContactAndWhatCannotBeReadIsTold) {
  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  const TemporaryFolder folder;
  const std::vector<std::string> slots = {ExternalSlot("Zed", "Moss"), ExternalSlot("Ann", "Lee")};
  const std::string sound = folder.Write("a.adr", ExternalFile(949, slots));
  const std::string guarded = folder.Write("b.adr", ExternalFile(949, {ExternalSlot("Own", "Er")}, "own"));
  const std::string none = folder.Write("c.adr", "hello");
  const auto browse = [&](HWND dialog, const std::string& file, const char* password, const char* told) {
    driver.ChooseFile(file);
    if (password != nullptr) {
      driver.WhenDialogOpens([&, password](HWND asking) {
        driver.TypeInto(asking, PasswordDialog::kPasswordEdit, password);
        driver.Press(asking, VK_RETURN);
      });
    }
    if (told != nullptr) driver.AnswerMessageBox(told, IDOK);
    driver.ClickControl(dialog, WithDialog::kBrowseButton);
    EXPECT_EQ(TextOf(dialog, WithDialog::kPathEdit), told != nullptr ? sound : file);
    EXPECT_EQ(core::ExternalContactsPath(), told != nullptr ? sound : file);
  };
  const auto chosen = [](HWND dialog, int line) {
    SendDlgItemMessage(dialog, WithDialog::kDescriptionBox, CB_SETCURSEL, static_cast<WPARAM>(line), 0);
    return TextOf(dialog, WithDialog::kDescriptionBox);
  };
  ASSERT_TRUE(core::RememberExternalContacts(sound));
  const auto script = [&](HWND dialog) {
    driver.ProcessEvents();
    EXPECT_EQ(chosen(dialog, 0) + chosen(dialog, 1) + chosen(dialog, 3),
              "Appointment with Ann Lee.Meeting with Ann Lee.Ann Lee");
    EXPECT_EQ(chosen(dialog, 2), "Call Ann Lee.");
    SetFocus(GetDlgItem(dialog, WithDialog::kContactList));
    driver.Press(dialog, VK_DOWN);
    EXPECT_EQ(TextOf(dialog, WithDialog::kDescriptionBox), "Call Zed Moss.") << "the third stays";
    browse(dialog, none, nullptr, "Can't open Nameleaf file.");
    browse(dialog, guarded, "wrong", "Can't open this file. Incorrect password.");
    EXPECT_EQ(TextOf(dialog, WithDialog::kDescriptionBox), "Call Zed Moss.");
    browse(dialog, guarded, "own", nullptr);
    EXPECT_EQ(TextOf(dialog, WithDialog::kDescriptionBox), "Call Own Er.");
    driver.TypeInto(dialog, WithDialog::kDescriptionBox, std::string(300, 'x'));
    driver.ClickControl(dialog, IDOK);
  };
  EXPECT_EQ(SubjectWith(driver, script), std::string(149, 'x'));

  ASSERT_TRUE(core::RememberExternalContacts(sound));
  const auto doubleClick = [&](HWND dialog) {
    driver.ProcessEvents();
    driver.DoubleClick(GetDlgItem(dialog, WithDialog::kContactList), {20, 5});
  };
  EXPECT_EQ(SubjectWith(driver, doubleClick), "Appointment with Ann Lee.");
}

}  // namespace
}  // namespace tests
