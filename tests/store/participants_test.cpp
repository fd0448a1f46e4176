// Events lie in two files. An operation on one that is cut off at any of its system calls, and then given
// again, ends as if nothing had happened; processes that change the participants of one store at once, and
// are killed while they do, lose nothing that they said was done.
#include <signal.h>
#include <unistd.h>

#include <fstream>
#include <random>

#include "core/calendar/file_check.h"
#include "core/events/event_commands.h"
#include "core/store/companion_file.h"
#include "gtest/gtest.h"
#include "platform/system/clock.h"
#include "store/store_operations.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

using core::Appointment;
using core::CommandResult;
using core::ParticipantList;

constexpr int kPowerCut = 7;

Records Emails(const std::string& store, std::uint64_t id) {
  ParticipantList list;
  EXPECT_EQ(list.Load(store, id), CommandResult::kDone) << list.Message();
  Records emails;
  for (const core::Participant& one : list.Participants()) {
    emails.push_back(std::string(core::ReadText(one.email)) + std::to_string(one.state));
  }
  return emails;
}

bool Save(ParticipantList& list) {
  int stored = 0;
  return list.Save(stored) == CommandResult::kDone;
}

// An event with participants in a calendar, and what may be done to it.
struct EventFiles {
  EventFiles(int eventState, const std::vector<int>& states) {
    Entry entry("Event");
    entry.appointment.header.eventFlag = static_cast<std::uint8_t>(eventState);
    id = entry.appointment.header.recordId;
    calendar.Add(entry);
    calendar.file.Close();
    ParticipantList list;
    EXPECT_EQ(list.Load(Store(), id), CommandResult::kDone);
    for (const int state : states) {
      const std::string name(1, static_cast<char>('a' + list.Participants().size()));
      core::Participant participant = core::NewParticipant(id, name, name);
      participant.state = static_cast<std::uint8_t>(state);
      EXPECT_TRUE(list.Add(participant));
    }
    EXPECT_TRUE(Save(list));
  }
  std::string Store() const { return core::ParticipantStorePath(calendar.Path()); }

  // The appointment as the calendar has it: its event state and send state, or "-" when it is gone.
  std::string State() const {
    core::RecordFile file(calendar.Path(), "");
    Appointment record;
    return file.ReadRecord(&record, core::RecordKey{2625, id})
               ? std::to_string(record.header.eventFlag) + "/" + std::to_string(record.header.eventRole)
               : "-";
  }

  TemporaryCalendar calendar;
  std::uint64_t id;
};

enum Operation { kInvite, kClear, kNotify, kCancel, kDelete };

bool Do(Operation operation, core::EditLock& lock, const std::string& store, Appointment& record) {
  if (operation == kNotify) {
    return core::NotifyChanged(store, record).result == CommandResult::kDone &&
           lock.Finish(lock.Write(&record)) == CommandResult::kDone;
  }
  if (operation == kCancel || operation == kDelete) {
    return core::DeleteEvent(lock, operation == kCancel).result == CommandResult::kDone;
  }
  ParticipantList list;
  if (list.Load(store, record.header.recordId) != CommandResult::kDone) return false;
  for (const core::Participant& one : list.Participants()) list.Mark(core::ReadText(one.email), 0);
  for (const char* email : {"x", "y"}) {
    if (operation == kInvite) static_cast<void>(list.Invite(email, email, ""));
  }
  int answer = 0;
  return core::SendEvent(list, lock, record, answer).result == CommandResult::kDone;
}

// As a command does it; the files are first brought in order where somebody died with them open.
bool RunOn(const EventFiles& files, Operation operation) {
  const core::CompanionFile calendar = core::OpenCompanion(files.calendar.Path(), core::kCalendarKind);
  if (calendar.file == nullptr) return false;
  core::EditLock lock(*calendar.file);
  Appointment record;
  if (lock.Take({2625, files.id}) == CommandResult::kVanished) return true;  // done before the cut
  return lock.Read(&record) == CommandResult::kDone && Do(operation, lock, files.Store(), record);
}

TEST(InterruptedEvent, IsBroughtRightByTheNextOperation) {
  const struct {
    const char* name;
    Operation operation;
    int eventState;
    std::vector<int> states;
    const char* state;
    Records participants;
  } kOperations[] = {
      {"invite", kInvite, core::kNoEvent, {}, "1/1", {"x1", "y1"}},
      {"exchange", kInvite, core::kInternetEvent, {3, 3}, "1/1", {"x1", "y1"}},
      {"clear", kClear, core::kInternetEvent, {1, 3}, "0/1", {}},
      {"notify", kNotify, core::kInternetEvent, {2, 3}, "1/5", {"a1", "b1"}},
      {"cancel", kCancel, core::kInternetEvent, {3, 1}, "9/4", {"a8"}},
      {"cancel unsent", kCancel, core::kInternetEvent, {1, 1}, "-", {}},
      {"delete", kDelete, core::kInternetEvent, {3, 1}, "-", {}},
  };
  // A process that ends leaves the system what it wrote; a busy disk would only take its time.
  const auto flush = std::exchange(platform::SystemFileCalls().flush, [](int) { return 0; });
  for (const auto& one : kOperations) {
    int code = kPowerCut;
    for (int nth = 1; code == kPowerCut; ++nth) {
      const std::string when = one.name + std::string(" cut before call ") + std::to_string(nth);
      const EventFiles files(one.eventState, one.states);
      ChildProcess child([&](const auto&) {
        FaultyCalls faults;
        faults.Before(FaultyCalls::kAny, nth, [] { _exit(kPowerCut); });
        return RunOn(files, one.operation) ? 0 : 1;
      });
      code = child.ExitCode();
      const std::string between = files.State();
      if (between == "-" || between.starts_with("0")) {
        EXPECT_EQ(Emails(files.Store(), files.id), Records{}) << when << ": participants of nothing";
      }
      EXPECT_TRUE(RunOn(files, one.operation)) << when;
      EXPECT_EQ(files.State(), one.state) << when;
      EXPECT_EQ(Emails(files.Store(), files.id), one.participants) << when;
    }
    EXPECT_EQ(code, 0) << one.name;
  }
  platform::SystemFileCalls().flush = flush;
}

// Invites a person and lets the one of three turns before go, again and again; the journal has a line for
// each turn that was done.
int InviteForEver(const std::string& store, std::uint64_t id, const std::string& journal) {
  std::ofstream done(journal);
  for (int turn = 1;; ++turn) {
    ParticipantList list;
    while (list.Load(store, id) != CommandResult::kDone) {
    }
    const auto expected = static_cast<std::size_t>(std::min(turn - 1, 3));
    if (list.Participants().size() != expected) {
      done << "lost" << std::endl;
      return 1;
    }
    static_cast<void>(list.Invite("n", std::to_string(turn) + ".", ""));
    if (turn > 3) list.Mark(std::to_string(turn - 3) + ".", 0);
    while (!Save(list)) {
    }
    done << turn << std::endl;
  }
}

TEST(ManyEvents, InOneStoreLoseNothingWhenTheirProcessesAreKilled) {
  const TemporaryFolder folder;
  const std::string store = folder.Join("a.cld.tsi");
  std::vector<std::unique_ptr<ChildProcess>> workers(8);
  std::vector<std::string> journals;
  const auto start = [&](std::size_t worker) {
    const std::uint64_t id = journals.size() + 1;
    const std::string journal = folder.Join(std::to_string(id));
    journals.push_back(journal);
    // Whoever is killed before it writes a line leaves an empty one.
    const std::ofstream empty(journal);
    workers[worker] =
        std::make_unique<ChildProcess>([=](const auto&) { return InviteForEver(store, id, journal); });
  };
  for (std::size_t i = 0; i < workers.size(); ++i) start(i);
  std::mt19937 random(7);
  for (int life = 0; life < 40; ++life) {
    usleep(static_cast<useconds_t>(1000 + random() % 60'000));
    const std::size_t victim = random() % workers.size();
    workers[victim]->Kill();
    start(victim);
  }
  for (const auto& worker : workers) worker->Kill();
  EXPECT_NE(core::OpenCompanion(store, core::kSendKind).file, nullptr);  // clears what the dead have locked
  const auto wrong = [](const core::Finding& finding) {
    ADD_FAILURE() << finding.what << " at " << finding.offset;
    return true;
  };
  EXPECT_EQ(core::CheckFile(store, wrong), core::OpenError::kNone);
  int turns = 0;
  for (std::size_t i = 0; i < journals.size(); ++i) {
    int last = 0;
    std::ifstream journal(journals[i]);
    for (int turn = 0; journal >> turn;) last = turn;
    EXPECT_TRUE(journal.eof()) << i << " lost somebody after turn " << last;
    turns += last;
    const Records found = Emails(store, i + 1);
    const auto has = [&found](int turn) {
      return std::count(found.begin(), found.end(), std::to_string(turn) + ".1") == 1;
    };
    // The turn that was cut off may have begun to invite and to let go.
    for (int turn = std::max(last - 1, 1); turn <= last; ++turn) EXPECT_TRUE(has(turn)) << i << ": " << turn;
    const int allowed =
        (last > 0 ? 1 : 0) + (last > 1 ? 1 : 0) + (has(last - 2) ? 1 : 0) + (has(last + 1) ? 1 : 0);
    EXPECT_EQ(found.size(), static_cast<std::size_t>(allowed)) << i << ": after turn " << last;
  }
  EXPECT_GT(turns, 40);
  RecordProperty("turns", turns);
}

}  // namespace
}  // namespace tests
