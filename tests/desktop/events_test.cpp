// Internet events in the running program: who is invited, what is asked and told, and what becomes of event
// and participants; and the setup of the account on the event server.
#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "addressbook/contacts_dialog.h"
#include "calendar/dialogs/appointment_editor.h"
#include "core/contacts/address_book.h"
#include "core/events/event_commands.h"
#include "core/events/registration.h"
#include "core/ini_file.h"
#include "core/store/companion_file.h"
#include "net/internet_events_dialog.h"
#include "net/server_dialogs.h"
#include "platform/desktop/accessible.h"
#include "platform/desktop/message_box.h"
#include "shell/commands.h"
#include "support/calendar_program.h"
#include "support/recording_dc.h"
#include "support/talking_server.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

using Dialog = InternetEventsDialog;
using Texts = std::vector<std::string>;

constexpr const char* kNotify = "Would you like to notify the participants of these changes ?";

class EventsTest : public testing::Test {
 protected:
  EventsTest() {
    core::WriteText(party.header.ownerIdentity.userName, core::kDefaultOwnerName);
    core::WriteText(party.header.ownerIdentity.email, core::kDefaultOwnerEmail);
    core::AddressBook book;
    std::string message;
    EXPECT_TRUE(book.Open(core::AddressBookPath(), "", message)) << message;
    core::Contact contact;
    if (book.List().Count() == 0) {
      for (const auto& [name, email] : {std::pair{"Ann", "ann@x"}, std::pair{"Bob", "joann@x"}})
        EXPECT_EQ(AddContact(*book.File(), name, email, contact), core::CommandResult::kDone);
    }
  }

  // Runs the program on a calendar with the party.
  void Run(const std::function<void()>& script) {
    calendar.Add(entry);
    program.Run(calendar.Path(), script);
  }
  void Command(unsigned id) {
    SendMessage(program.Frame(), WM_COMMAND, id, 0);
    driver.ProcessEvents();
  }
  void SelectEvent() { driver.Click(program.List(), program.RowPoint(0)); }
  // Opens the dialog on the event and runs a script in it, which is to end it.
  void InEvent(const std::function<void()>& script) {
    SelectEvent();
    driver.WhenDialogOpens([this, script](HWND opened) {
      dialog = opened;
      script();
    });
    Command(ID_INTERNET_EVENTS);
  }
  // Chooses a contact, by its row.
  void Invite(int row) {
    driver.WhenDialogOpens([this, row](HWND chooser) {
      driver.ProcessEvents();  // the book is opened when the dialog is there
      for (int i = 0; i <= row; ++i) driver.Press(chooser, VK_DOWN);
      driver.ClickControl(chooser, IDOK);
    });
    driver.ClickControl(dialog, Dialog::kInviteButton);
  }
  // A row of the list that lies over a part of a dialog, or the list itself.
  static AccessiblePart PartOf(HWND owner, int area, int row = kWholeWindow) {
    const RECT place = PlaceOf(GetDlgItem(owner, area));
    AccessiblePart part;
    SendMessage(WindowFromPoint({place.left + 10, place.top + 10}), WM_DESCRIBE, static_cast<WPARAM>(row),
                reinterpret_cast<LPARAM>(&part));
    return part;
  }
  AccessiblePart ListPart() const { return PartOf(dialog, Dialog::kListArea); }
  std::string Row(int index) const { return PartOf(dialog, Dialog::kListArea, index).name; }
  void RemoveLast() {
    driver.Press(dialog, VK_END);
    driver.ProcessEvents();
    driver.ClickControl(dialog, Dialog::kRemoveButton);
  }
  // E-mail and state of each stored participant.
  Texts Stored() {
    const core::CompanionFile store = core::ReadCompanion(Store(), core::kSendKind);
    std::vector<core::StoredParticipant> stored;
    EXPECT_EQ(core::ReadParticipants(*store.file, party.header.recordId, 30, stored),
              core::CommandResult::kDone);
    Texts texts;
    for (const auto& [one, offset] : stored)
      texts.push_back(std::string(core::ReadText(one.email)) + " " + std::to_string(one.state));
    return texts;
  }
  std::string Store() const { return core::ParticipantStorePath(calendar.Path()); }
  core::Appointment Event() const {
    core::Appointment record{};
    EXPECT_TRUE(calendar.file.ReadRecord(&record, AllRecords(calendar.file).KeyAt(0)));
    return record;
  }
  // What the delivering side does when an answer comes.
  void SetStates(core::ParticipantState state) {
    const core::CompanionFile store = core::OpenCompanion(Store(), core::kSendKind);
    const auto change = [state](core::Participant& one) { return (one.state = state) != 0; };
    EXPECT_EQ(ChangeParticipants(*store.file, party.header.recordId, change).met, 2);
  }

  CalendarProgram program;
  DesktopDriver& driver = program.driver;
  TemporaryCalendar calendar;
  Entry entry = Entry("Party").On(14, 3, 2004);
  core::Appointment& party = entry.appointment;
  HWND dialog = nullptr;
};

TEST_F(EventsTest, PeopleAreInvitedAndToldOfChangesAndOfTheEnd) {
  Run([&] {
    const auto usable = [&](int id) { return Enabled(dialog, id); };
    Command(ID_INTERNET_EVENTS);  // nothing is selected
    InEvent([&] {
      EXPECT_EQ(TextOf(dialog, Dialog::kOwnerLine), "Owner: Daybrix");
      Invite(1);
      EXPECT_FALSE(usable(IDOK) || usable(Dialog::kRemoveButton)) << "without a subject";
      driver.TypeInto(dialog, Dialog::kSubjectEdit, "Summer");
      EXPECT_TRUE(usable(IDOK));
      Invite(0);
      Invite(1);  // "ann@x" is a part of "joann@x"
      EXPECT_EQ(Row(0) + Row(1), "joann@x, Bob, wait for sendann@x, Ann, wait for send");
      driver.AnswerMessageBox("Item put on Events panel.", IDOK);
      driver.ClickControl(dialog, IDOK);
    });
    EXPECT_EQ(Stored(), (Texts{"ann@x 1", "joann@x 1"}));
    EXPECT_EQ(core::ReadText(Event().header.eventSubject), "Summer");
    SetStates(core::kAccepted);
    InEvent([&] {
      EXPECT_FALSE(usable(Dialog::kSubjectEdit) || usable(IDOK) || usable(Dialog::kRemoveButton));
      RemoveLast();
      EXPECT_EQ(Row(1), "joann@x, Bob, canceld");
      driver.ClickControl(dialog, IDOK);
    });
    EXPECT_EQ(Stored(), (Texts{"ann@x 3", "joann@x 8"}));

    SelectEvent();
    driver.WhenDialogOpens([&](HWND editor) { driver.ClickControl(editor, IDOK); });
    driver.AnswerMessageBox(kNotify, IDYES);
    Command(ID_ITEM_EDIT);
    EXPECT_EQ(Stored(), (Texts{"ann@x 1", "joann@x 1"}));
    EXPECT_EQ(Event().header.eventRole, core::kSendChanged);
    driver.AnswerMessageBox("Do you want to delete this Tempoline appointment ?", IDYES);
    driver.AnswerMessageBox(kNotify, IDYES);
    Command(ID_ITEM_DELETE);
    EXPECT_EQ(Stored(), (Texts{"ann@x 8", "joann@x 8"}));
    EXPECT_EQ(Event().header.eventFlag, core::kCancelledEvent);
    EXPECT_FALSE(program.Session().Bin().IsEmpty());
    SelectEvent();
    for (const unsigned refused : {ID_ITEM_EDIT, ID_CUT, ID_INTERNET_EVENTS}) Command(refused);
    driver.AnswerMessageBox(kNotify, IDNO);
    const HWND bin = program.Panel().Bin().Handle();
    driver.Drag(program.List(), program.RowPoint(0), bin,
                {Width(ClientOf(bin)) / 2, Height(ClientOf(bin)) - 20});
    EXPECT_TRUE(program.Subjects().empty());
    EXPECT_TRUE(Stored().empty());
  });
}

TEST_F(EventsTest, OthersOnlySeeWhoseEventItIs) {
  core::WriteText(party.header.ownerIdentity.userName, "Nora");
  Run([&] {
    InEvent([&] {
      EXPECT_EQ(TextOf(dialog, Dialog::kOwnerText), "Owner:\n\rNora\n\rDaybrixMail");
      EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, Dialog::kOwnerLine)));
      for (const int id : {int{Dialog::kInviteButton}, int{Dialog::kSubjectEdit}, int{IDOK}})
        EXPECT_FALSE(Enabled(dialog, id)) << id;
      driver.Press(dialog, VK_RETURN);
      driver.Press(dialog, VK_ESCAPE);
    });
  });
}

TEST_F(EventsTest, AStoreThatIsNoneIsToldAndNothingIsLost) {
  party.header.eventFlag = core::kInternetEvent;
  std::ofstream(Store()) << "no store";
  Run([&] {
    SelectEvent();
    driver.AnswerMessageBox("The participants were not saved.", IDOK);
    Command(ID_INTERNET_EVENTS);
    for (const int answer : {IDYES, IDNO}) {
      driver.WhenDialogOpens([&, answer](HWND editor) {
        driver.TypeInto(editor, AppointmentEditor::kSubjectEdit, answer == IDYES ? "Typed" : "Typed again");
        driver.ClickControl(editor, IDOK);
      });
      driver.AnswerMessageBox(kNotify, answer);
      if (answer == IDYES) driver.AnswerMessageBox("The appointment was not saved.", IDOK);
    }
    Command(ID_ITEM_EDIT);
    EXPECT_EQ(program.Subjects(), Texts{"Typed again"});
    EXPECT_EQ(Event().header.editLock, 0);
  });
}

const auto systemWrite = platform::SystemFileCalls().write;

// The disk has no room for another participant.
std::int64_t WriteNoParticipant(int descriptor, const void* buffer, std::size_t size, std::int64_t offset) {
  if (size != sizeof(core::Participant)) return systemWrite(descriptor, buffer, size, offset);
  errno = ENOSPC;
  return -1;
}

TEST_F(EventsTest, WhatWasChosenComesBackFromAFullDiskButNotToWhoMayNot) {
  Run([&] {
    InEvent([&] {
      driver.TypeInto(dialog, Dialog::kSubjectEdit, "Summer");
      Invite(0);
      platform::SystemFileCalls().write = WriteNoParticipant;
      driver.AnswerMessageBox("The disk is full.\r\nThe participants were not saved.", IDOK);
      driver.WhenDialogOpens([&](HWND again) {
        dialog = again;
        EXPECT_EQ(std::to_string(Event().header.eventFlag) + Row(0), "1ann@x, Ann, wait for send");
        EXPECT_TRUE(Stored().empty());
        platform::SystemFileCalls().write = systemWrite;
        driver.AnswerMessageBox("Item put on Events panel.", IDOK);
        driver.ClickControl(dialog, IDOK);
      });
      driver.ClickControl(dialog, IDOK);
    });
    EXPECT_EQ(Stored(), Texts{"ann@x 1"});
    EXPECT_EQ(core::ReadText(Event().header.eventSubject), "Summer");
    EXPECT_EQ(Event().header.editLock, 0);
    InEvent([&] {
      RemoveLast();
      EXPECT_TRUE(calendar.file.UpdateHeaderBlock([](core::HeaderBlock& block) {
        for (char* password : {block.ownerPassword, block.assistantPassword, block.readerPassword}) {
          *password = 'x';
        }
      }));
      driver.AnswerMessageBox("Open the file again with the new one.\r\nThe participants were not saved.",
                              IDOK);
      driver.ClickControl(dialog, IDOK);
    });
  });
}

TEST_F(EventsTest, WhatWasChosenComesBackOverACalendarThatTookThePlaceOfTheOpenOne) {
  const TemporaryCalendar empty;
  const std::string twin = calendar.Path() + ".twin";
  const std::string none = calendar.Path() + ".none";
  std::filesystem::copy_file(empty.Path(), none);
  // OK over the other calendar is told, and given again.
  const auto replaceBy = [&](const std::string& other, const char* toldThen) {
    std::filesystem::rename(other, calendar.Path());
    driver.AnswerMessageBox("which is open now.\r\nThe participants were not saved.", IDOK);
    driver.WhenDialogOpens([&, toldThen](HWND again) {
      driver.AnswerMessageBox(toldThen, IDOK);
      driver.ClickControl(again, IDOK);
    });
    driver.ClickControl(dialog, IDOK);
  };
  Run([&] {
    std::filesystem::copy_file(calendar.Path(), twin);
    InEvent([&] {
      driver.TypeInto(dialog, Dialog::kSubjectEdit, "Summer");
      Invite(0);
      replaceBy(twin, "Item put on Events panel.");
    });
    EXPECT_EQ(Stored(), Texts{"ann@x 1"});
    EXPECT_EQ(program.Shown().front().header.eventFlag, core::kInternetEvent);
    EXPECT_EQ(core::ReadText(program.Shown().front().header.eventSubject), "Summer");
    InEvent([&] {
      RemoveLast();
      replaceBy(none, "Record is deleted by other user.\r\nThe participants were not saved.");
    });
    EXPECT_TRUE(program.Subjects().empty());
  });
}

TEST_F(EventsTest, ThirtyAreInvitedAtMostAndTheAddressBookIsFollowedMeanwhile) {
  party.header.eventFlag = core::kInternetEvent;
  {
    const core::CompanionFile store = core::OpenOrMakeCompanion(Store(), core::kSendKind);
    for (int i = 0; i < 31; ++i) {
      const std::string name = std::to_string(10 + i);
      const core::Participant one = core::NewParticipant(party.header.recordId, name, name + ".x");
      EXPECT_EQ(store.file->AddRecord(&one), core::Result::kDone);
    }
  }
  Run([&] {
    InEvent([&] {
      driver.Type(dialog, "3");
      EXPECT_EQ(ListPart().currentItem, 20);
      Invite(0);
      EXPECT_EQ(ListPart().items, 30);
      EXPECT_FALSE(Enabled(dialog, IDOK));
      driver.WhenDialogOpens([&](HWND book) {
        driver.ProcessEvents();
        const auto contacts = [book] { return PartOf(book, ContactsDialog::kContactList).items; };
        const int before = contacts();
        core::AddressBook other;
        core::Contact contact;
        std::string message;
        EXPECT_TRUE(other.Open(core::AddressBookPath(), "", message)) << message;
        EXPECT_EQ(AddContact(*other.File(), "Late", "", contact), core::CommandResult::kDone);
        core::FileWatch::OfProcess().Look();
        driver.ProcessEvents();
        EXPECT_EQ(contacts(), before + 1);
        driver.Press(book, VK_ESCAPE);
      });
      driver.ClickControl(dialog, Dialog::kAddressBookButton);
      EXPECT_FALSE(core::RefreshEnabled()) << "under the lock of the appointment";
      driver.Press(dialog, VK_ESCAPE);
    });
  });
}

TEST_F(EventsTest, RowsShowAddressStateAndName) {
  ParticipantRows rows(1);
  core::Participant one = core::NewParticipant(1, "Ann", "ann@x");
  one.state = core::kRejected;
  rows.ShowParticipants({one});
  RecordingDc hdc;
  rows.DrawCell(&hdc, 0, 0, 1, {0, 0, 200, 30});
  EXPECT_EQ(hdc.calls.front().colour, RGB(219, 219, 219));
  for (const char* text : {"ann@x", "rejected", "Ann"}) {
    ASSERT_NE(hdc.FindText(text), nullptr) << text;
    EXPECT_EQ(hdc.FindText(text)->colour, RGB(0, 0, 255));
  }
}

TEST_F(EventsTest, TheAccountIsCheckedKeptGuardedAndRegistered) {
  using Setup = ServerSetupDialog;
  const core::IniFile settings("Daybrix.ini");
  const core::RegistrationRequest request = core::MakeRegistrationRequest(core::kDefaultOwnerEmail, "");
  TalkingServer server({reinterpret_cast<const char*>(&request), sizeof request}, [](int connection) {
    usleep(300'000);
    send(connection, "\1\0\0\0", 4, MSG_NOSIGNAL);
  });
  ASSERT_TRUE(settings.WriteString("eServer", "server", "127.0.0.1"));
  ASSERT_TRUE(settings.WriteString("eServer", "port", server.port));
  Run([&] {
    driver.WhenDialogOpens([&](HWND setup) {
      EXPECT_FALSE(Enabled(setup, IDOK) || Enabled(setup, Setup::kRegisterButton));
      driver.TypeInto(setup, Setup::kServerEdit, "typed.example");
      driver.TypeInto(setup, Setup::kPortEdit, "80x");
      const std::tuple<int, const char*, const char*> kSteps[] = {
          {Setup::kConfirmationEdit, "abcdefghij", "Incorrect Password"},
          {Setup::kPasswordEdit, "abcdefghix", "Incorrect Name"},
          {Setup::kNameEdit, "Nora", "Incorrect E-mail"}};
      for (const auto& [edit, typed, fault] : kSteps) {
        driver.TypeInto(setup, edit, typed);
        EXPECT_FALSE(Enabled(setup, IDOK));
        driver.AnswerMessageBox(fault, IDOK);
        driver.ClickControl(setup, Setup::kRegisterButton);
      }
      EXPECT_FALSE(core::IsServerPasswordSet());
      driver.TypeInto(setup, Setup::kEmailEdit, "nora");
      // What comes while the server is asked neither ends the dialog nor asks a second time.
      PostMessage(setup, WM_CLOSE, 0, 0);
      PostMessage(setup, WM_COMMAND, Setup::kRegisterButton, 0);
      driver.AnswerMessageBox("User with this e-mail address already exist.", IDOK);
      SendMessage(setup, WM_COMMAND, Setup::kRegisterButton, 0);
      driver.ClickControl(setup, IDOK);
    });
    Command(ID_SERVER_SETUP);
    EXPECT_TRUE(server.WasAskedRightly());
    EXPECT_EQ(core::ReadServerAccount().port + core::ReadServerAccount().password, "80xabcdefghi");
    EXPECT_EQ(core::ReadText(calendar.Header().serverAddress), "127.0.0.1");
    driver.WhenDialogOpens([&](HWND prompt) {
      EXPECT_EQ(GetWindowText(prompt), "Nora");
      driver.TypeInto(prompt, 100, "Abcdefghi");
      driver.AnswerMessageBox("Incorrect Password", IDOK);
      driver.Press(prompt, VK_RETURN);
      driver.WhenDialogOpens([&](HWND setup) { driver.Press(setup, VK_ESCAPE); });
      driver.TypeInto(prompt, 100, "abcdefghij");
      driver.Press(prompt, VK_RETURN);
    });
    Command(ID_SERVER_SETUP);
    EXPECT_TRUE(calendar.file.UpdateHeaderBlock(
        [](core::HeaderBlock& block) { core::WriteText(block.ownerIdentity.userName, "Nora"); }));
    driver.AnswerMessageBox("You don't have permission for this action.", IDOK);
    Command(ID_SERVER_SETUP);
  });
}

}  // namespace
}  // namespace tests
