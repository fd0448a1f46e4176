// The commands about people: the address book, the participants of events and the account.
#include <gtest/gtest.h>

#include "core/events/participant_list.h"
#include "support/command_line.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

TEST(CliContacts, AreAddedListedChangedAndDeleted) {
  const TemporaryFolder folder;
  const std::string book = folder.Join("book.tb1");
  const auto run = [&book](std::vector<std::string> words) {
    words.insert(words.begin(), "contacts");
    words.insert(words.end(), {"--book", book});
    return RunCli(words);
  };
  EXPECT_EQ(run({"list"}).code, 2) << "no such book";
  const CommandResult bob = run({"add", "--name=bob", "--email=b@x"});
  ASSERT_EQ(bob.code, 0) << bob.errors;
  const std::string id = bob.output.substr(0, 16);
  ASSERT_EQ(run({"add", "--name=Ällice"}).code, 0);
  EXPECT_EQ(run({"edit", id, "--email=c@x"}).code, 0);
  const CommandResult listed = run({"list", "--format=csv"});
  EXPECT_EQ(listed.code, 0);
  EXPECT_NE(listed.output.find("\r\n" + id + ",bob,c@x\r\n"), std::string::npos) << listed.output;
  EXPECT_LT(listed.output.find(",bob,"), listed.output.find(",Ällice,")) << "only A to Z are folded";
  EXPECT_EQ(run({"delete", id}).code, 0);
  EXPECT_EQ(run({"delete", id}).code, 3);
  EXPECT_EQ(run({"list"}).output.find("bob"), std::string::npos);
  for (const std::vector<std::string>& wrong :
       std::vector<std::vector<std::string>>{{},
                                             {"show"},
                                             {"add"},
                                             {"edit", id},
                                             {"edit", "--name=x"},
                                             {"list", id},
                                             {"list", "--name=x"},
                                             {"add", "--name", std::string(50, 'x')},
                                             {"add", "--name=Ж"},
                                             {"delete", "12"}}) {
    EXPECT_EQ(run(wrong).code, 1) << testing::PrintToString(wrong);
  }
}

TEST(CliParticipants, OfVisibleEventsAreListedAndNothingIsMade) {
  TemporaryCalendar calendar({"own", "", ""});
  const auto run = [&](std::vector<std::string> words) {
    words.insert(words.begin(), {"participants", calendar.Path(), "--format=csv"});
    return RunCli(words);
  };
  Entry shown("Party");
  shown.appointment.header.recordId = 0xF1;
  shown.appointment.header.eventFlag = core::kInternetEvent;
  Entry secret("Secret");
  secret.appointment.header.recordId = 0xF2;
  calendar.Add(shown);
  calendar.Add(secret.Confidential());
  const std::string store = core::ParticipantStorePath(calendar.Path());
  EXPECT_EQ(run({}).output, "event,subject,state,name,email\r\n");
  EXPECT_FALSE(platform::FileExists(store));
  for (const std::uint64_t id : {0xF2, 0xF1, 0xF3}) {
    core::ParticipantList list;
    ASSERT_EQ(list.Load(store, id), core::CommandResult::kDone);
    EXPECT_EQ(list.Invite("Zoe", "z@x", ""), core::InviteResult::kInvited);
    EXPECT_EQ(list.Invite("ann", "a@x", ""), core::InviteResult::kInvited);
    int stored = 0;
    ASSERT_EQ(list.Save(stored), core::CommandResult::kDone);
  }
  const std::string party =
      "00000000000000f1,Party,wait for send,ann,a@x\r\n00000000000000f1,Party,wait for send,Zoe,z@x\r\n";
  EXPECT_EQ(run({}).output, "event,subject,state,name,email\r\n" + party) << "as an Assistant";
  EXPECT_NE(run({"--password=own"}).output.find("Secret"), std::string::npos);
  EXPECT_EQ(run({"00000000000000f1", "--password=own"}).output, "event,subject,state,name,email\r\n" + party);
  EXPECT_EQ(run({"00000000000000f2"}).code, 3);
  const CommandResult check = RunCli({"check", store, "--format=csv"});
  EXPECT_EQ(check.code, 2);
  EXPECT_EQ(check.output,
            "offset,where,what\r\n"
            "6257,slot,it is a participant of an appointment that is not in the calendar\r\n"
            "7165,slot,it is a participant of an appointment that is not in the calendar\r\n");
  EXPECT_EQ(RunCli({"delete", calendar.Path(), "00000000000000f1"}).code, 0);
  core::ParticipantList left;
  ASSERT_EQ(left.Load(store, 0xF1), core::CommandResult::kDone);
  EXPECT_TRUE(left.Participants().empty()) << "nobody is invited to what is gone";
}

TEST(CliRegister, SaysWhatCameOfIt) {
  const TemporaryFolder folder;
  folder.Write("Daybrix.ini", "[eServer]\nserver=127.0.0.1\nport=0\n");
  const CommandResult result =
      RunShell("DAYBRIX_FOLDER='" + folder.Path() + "' '" TEMPOLINE_CLI "' register");
  EXPECT_EQ(result.code, 2);
  EXPECT_EQ(result.output, "Unable to connect to server\n");
}

}  // namespace
}  // namespace tests
