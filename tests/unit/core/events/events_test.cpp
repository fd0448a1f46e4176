// Participants of internet events: what each operation makes of each state, in the store and in the
// appointment.
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>

#include "core/contacts/address_book.h"
#include "core/events/event_commands.h"
#include "core/events/people_check.h"
#include "core/store/companion_file.h"
#include "gtest/gtest.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;

constexpr std::uint64_t kOther = 0x5EED;

std::string Address(int state) {
  return std::string(1, 's').append(std::to_string(state)).append("@x");
}

class Events : public testing::Test {
 protected:
  Events() {
    event.appointment.header.recordId = 0xABCDEF0123456789;
    event.appointment.header.eventFlag = kInternetEvent;
  }
  // One participant in each state from 0 to 9, and one of another event.
  void Fill() {
    const CompanionFile store = OpenOrMakeCompanion(path, kSendKind);
    for (int state = 0; state <= 9; ++state) Put(*store.file, Id(), state);
    Put(*store.file, kOther, 3);
  }
  static void Put(RecordFile& store, std::uint64_t id, int state) {
    Participant participant = NewParticipant(id, "name " + Address(state), Address(state));
    participant.state = static_cast<std::uint8_t>(state);
    ASSERT_EQ(store.AddRecord(&participant), Result::kDone);
  }
  std::uint64_t Id() const { return event.appointment.header.recordId; }
  // A character for each participant that Fill made: his state now, or a dash when he is gone.
  std::string States(std::uint64_t id) const {
    std::string states(10, '-');
    std::vector<StoredParticipant> stored;
    const CompanionFile store = ReadCompanion(path, kSendKind);
    EXPECT_EQ(ReadParticipants(*store.file, id, 100, stored), CommandResult::kDone);
    for (const StoredParticipant& one : stored) {
      EXPECT_EQ(one.participant.header.editLock, 0);
      states.at(static_cast<std::size_t>(one.participant.email[1] - '0')) =
          static_cast<char>('0' + one.participant.state);
    }
    return states;
  }

  tests::TemporaryCalendar calendar;
  std::string path = ParticipantStorePath(calendar.Path());
  Entry event;
};

TEST_F(Events, EveryOperationOnEveryState) {
  Appointment& record = event.appointment;
  const auto changed = [&] { return NotifyChanged(path, record).result; };
  const auto cancelled = [&] { return CancelEvent(path, record).result; };
  const auto removed = [&] { return RemoveEventEntries(path, Id()).result; };
  const auto offList = [&] {
    ParticipantList list;
    EXPECT_EQ(list.Load(path, Id()), CommandResult::kDone);
    for (int state = 0; state <= 9; ++state) {
      EXPECT_TRUE(list.Remove(Address(state), record.header.eventRole));
    }
    int stored = 0;
    const CommandResult saved = list.Save(stored);
    EXPECT_EQ(stored, record.header.eventRole == kSendNew ? 8 : 9);
    return saved;
  };
  const struct {
    const char* name;
    int role;
    std::function<CommandResult()> run;
    const char* states;
    const char* fields;  // eventFlag, eventRole and inUse
  } kOperations[] = {{"changed", 2, changed, "1111111111", "151"},
                     {"cancelled unsent", kSendNew, cancelled, "8-88888888", "941"},
                     {"cancelled", kSendChanged, cancelled, "8888888888", "941"},
                     {"removed", 1, removed, "----------", "111"},
                     {"off the list, unsent", kSendNew, offList, "8-888-8888", "111"},
                     {"off the list", 2, offList, "88888-8888", "121"}};
  for (const auto& operation : kOperations) {
    std::filesystem::remove(path);
    Fill();
    record.header.eventFlag = kInternetEvent;
    record.header.eventRole = static_cast<std::uint8_t>(operation.role);
    SetRefreshEnabled(false);  // as under the appointment's own lock
    EXPECT_EQ(operation.run(), CommandResult::kDone) << operation.name;
    EXPECT_FALSE(RefreshEnabled());
    SetRefreshEnabled(true);
    EXPECT_EQ(States(Id()), operation.states) << operation.name;
    EXPECT_EQ(States(kOther), "---3------") << operation.name;
    const RecordHeader& header = record.header;
    EXPECT_EQ(
        std::to_string(header.eventFlag) + std::to_string(header.eventRole) + std::to_string(header.inUse),
        operation.fields)
        << operation.name;
  }
  const char* const kTexts[] = {"?",        "wait for send", "no reply yet",   "accepted", "new data",
                                "rejected", "accepted",      "accept message", "canceld",  "?"};
  for (int state = 0; state <= 9; ++state) EXPECT_STREQ(ParticipantStateText(state), kTexts[state]);
  EXPECT_EQ(ParticipantItem(NewParticipant(1, "Ann Lee", "ann@x")), "ann@x\nAnn Lee\n1");
}

TEST_F(Events, WhomSomebodyEditsIsPassedOverAndKeepsTheEventThere) {
  Fill();
  RecordFile store(path, "");
  std::vector<StoredParticipant> all;
  ASSERT_EQ(ReadParticipants(store, Id(), 100, all), CommandResult::kDone);
  ASSERT_TRUE(store.LockRecord(all[1].offset));
  ParticipantList list;
  ASSERT_EQ(list.Load(path, Id()), CommandResult::kDone);
  EXPECT_EQ(list.Participants().size(), 9U);
  EXPECT_EQ(RemoveEventEntries(path, Id()).result, CommandResult::kDone);
  EXPECT_EQ(CancelEvent(path, event.appointment).result, CommandResult::kDone);
  EXPECT_EQ(event.appointment.header.inUse, 1) << "one is still there to be told";
  ASSERT_TRUE(store.UnlockRecord(all[1].offset));
  EXPECT_EQ(States(Id()), "-1--------");

  // A slot that has gone to another event's participant is left alone.
  Participant stranger = NewParticipant(kOther, "name", Address(1));
  ASSERT_EQ(store.WriteRecord(&stranger, all[1].offset), Result::kDone);
  EXPECT_EQ(ChangeParticipant(store, all[1], [](Participant&) { return false; }), CommandResult::kVanished);
}

// What is then written, and in which order, tests/store looks at.
TEST_F(Events, SendingDecidesByStateAndList) {
  constexpr int kNobody = -1;
  const struct {
    const char* name;
    int before;
    int participant;  // his state
    int answer;
    int after;
  } kCases[] = {{"nobody", kNoEvent, kNobody, kEventSettled, kNoEvent},
                {"the first", kNoEvent, 1, kEventWaits, kInternetEvent},
                {"one more", kInternetEvent, 1, kEventSettled, kInternetEvent},
                {"the last has left", kInternetEvent, kNobody, kEventSettled, kNoEvent},
                {"another side's state", 2, 8, kEventWaits, kInternetEvent},
                {"all settled", 2, 3, kEventSettled, 2}};
  for (const auto& one : kCases) {
    Appointment record{};
    record.header.eventFlag = static_cast<std::uint8_t>(one.before);
    Participant participant = NewParticipant(Id(), "n", "e");
    participant.state = static_cast<std::uint8_t>(one.participant);
    ParticipantList list;
    EXPECT_TRUE(one.participant == kNobody || list.Add(participant));
    EXPECT_EQ(DecideEvent(list, record), one.answer) << one.name;
    EXPECT_EQ(record.header.eventFlag, one.after) << one.name;
  }
}

TEST_F(Events, ThirtyAreInvitedOnceEachAndNeverTheOwner) {
  ParticipantList list;
  ASSERT_EQ(list.Load(path, Id()), CommandResult::kDone);
  EXPECT_EQ(list.Invite("Me", "DaybrixMail", "DaybrixMail"), InviteResult::kOwnAddress);
  EXPECT_EQ(list.Invite("Jo", "joann.lee@x", ""), InviteResult::kInvited);
  EXPECT_EQ(list.Invite("Ann", "ann.lee@x", ""), InviteResult::kInvited);
  EXPECT_EQ(list.Invite("Jo", "joann.lee@x.org", ""), InviteResult::kDuplicate);
  EXPECT_EQ(list.Invite("of ann.lee@x", "other@x", ""), InviteResult::kDuplicate);
  for (int i = 2; i < 30; ++i) {
    EXPECT_EQ(list.Invite("n", std::string(1, 'p').append(std::to_string(i)).append("-@x"), ""),
              InviteResult::kInvited);
  }
  EXPECT_TRUE(list.Mark("ann.lee@x", 0));
  EXPECT_FALSE(list.Mark("ann.lee@x", 0));
  EXPECT_EQ(list.Invite("n", "last@x", ""), InviteResult::kFull) << "free places count";
  int stored = 0;
  ASSERT_EQ(list.Save(stored), CommandResult::kDone);
  EXPECT_EQ(stored, 29);
  ASSERT_TRUE(list.Mark("p2-@x", 0));
  ASSERT_EQ(list.Save(stored), CommandResult::kDone);  // once more: nothing is stored twice, and he leaves
  ASSERT_EQ(list.Load(path, Id()), CommandResult::kDone);
  EXPECT_EQ(list.Participants().size(), 28U);

  // A free place is taken first, and who had it leaves the store all the same.
  const std::string first(ReadText(list.Participants()[0].email));
  ASSERT_TRUE(list.Mark(first, 0));
  ASSERT_EQ(list.Invite("n", "last@x", ""), InviteResult::kInvited);
  EXPECT_EQ(ReadText(list.Participants()[0].email), "last@x");
  ASSERT_EQ(list.Save(stored), CommandResult::kDone);
  ASSERT_TRUE(list.Mark("last@x", 0));
  ASSERT_EQ(list.Invite("n", "last@x", ""), InviteResult::kInvited);  // into the slot that he leaves
  for (int i = 0; i < 2; ++i) ASSERT_EQ(list.Save(stored), CommandResult::kDone);
  ASSERT_EQ(list.Load(path, Id()), CommandResult::kDone);
  EXPECT_EQ(list.Participants().size(), 28U);
  EXPECT_FALSE(list.Mark(first, 0));
  EXPECT_TRUE(list.Mark("last@x", 0));

  Appointment own;
  ASSERT_TRUE(NewAppointment(calendar.file, own));
  EXPECT_TRUE(IsEventOwner(calendar.file, own));
  EXPECT_FALSE(IsEventOwner(calendar.file, event.appointment));
}

TEST_F(Events, WhoSharesTheCalendarSharesItsStore) {
  ASSERT_EQ(chmod(calendar.Path().c_str(), 0660), 0);
  ParticipantList list;
  ASSERT_EQ(list.Load(path, Id()), CommandResult::kDone);
  struct stat about = {};
  ASSERT_EQ(stat(path.c_str(), &about), 0);
  EXPECT_EQ(about.st_mode & 0777, 0660U);
}

TEST_F(Events, AStoreThatIsNoneIsSaidAndTheAppointmentStands) {
  std::ofstream(path) << "hello";
  ParticipantList list;
  EXPECT_EQ(list.Load(path, Id()), CommandResult::kFailed);
  EXPECT_NE(list.Message().find(path), std::string::npos);
  const Appointment before = event.appointment;
  EXPECT_NE(NotifyChanged(path, event.appointment).message.find(path), std::string::npos);
  EXPECT_EQ(std::memcmp(&before, &event.appointment, sizeof before), 0);
  const std::int32_t offset = calendar.Add(event);
  EditLock lock(calendar.file);
  ASSERT_EQ(lock.Take({offset, Id()}), CommandResult::kDone);
  EXPECT_EQ(DeleteEvent(lock, true).result, CommandResult::kFailed);
  Appointment stored;
  EXPECT_TRUE(calendar.file.ReadRecord(&stored, offset));
  EXPECT_EQ(stored.header.editLock, 0);
}

TEST_F(Events, ACheckTellsWhatIsWrongWithPeople) {
  const auto findings = [](const std::string& file) {
    std::string all;
    CheckPeople(file, [&all](const Finding& finding) {
      all.append(std::to_string(finding.offset)).append(" ").append(finding.what).append("\n");
      return true;
    });
    return all;
  };
  Fill();
  const std::string beside =
      "2625 state is 0, not 1 to 8\n10797 state is 9, not 1 to 8\n"
      "11705 it is a participant of an appointment that is not in the calendar\n";
  calendar.Add(event);
  EXPECT_EQ(findings(path), beside);
  const std::string alone = path + ".copy";
  std::filesystem::copy_file(path, alone);
  EXPECT_EQ(findings(alone), beside.substr(0, beside.find("11705"))) << "beside no calendar";
  const std::string book = path + ".tb1";
  {
    const CompanionFile contacts = OpenOrMakeCompanion(book, kAddressKind);
    Contact contact;
    EXPECT_EQ(AddContact(*contacts.file, std::string(49, 'n'), "a\nb@x", contact), CommandResult::kDone);
    EXPECT_EQ(AddContact(*contacts.file, "a\x7F", "", contact), CommandResult::kDone);
  }
  EXPECT_EQ(findings(book),
            "2625 email has a control character in it\n3484 name has a control character in it\n");
  EXPECT_EQ(findings(calendar.Path()) + findings(path + ".none"), "");
}

}  // namespace
}  // namespace core
