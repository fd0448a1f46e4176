// What becomes of a plan in a calendar that has some of it already, and that others change meanwhile.
#include "core/exchange/ical_update.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include "core/store/edit_lock.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::TemporaryCalendar;
using Texts = std::vector<std::string>;

// A piece of event 7 on a day of March 2004, as a calendar has it or as a file says.
struct Piece {
  std::string subject;
  int day;
  std::uint32_t version;
  std::uint32_t changed = 0;
};

constexpr std::uint64_t kUid = 7;

Entry Make(const Piece& piece, std::uint64_t uid = kUid) {
  Entry entry(piece.subject);
  entry.On(piece.day, 3, 2004);
  entry.appointment.importMark = {uid, piece.version, piece.changed, static_cast<std::uint16_t>(piece.day),
                                  0};
  return entry;
}

IcalPlan Plan(const std::vector<Piece>& pieces, bool own = false, std::uint64_t uid = kUid) {
  IcalPlan plan;
  for (const Piece& piece : pieces) plan.records.push_back({Make(piece, uid).appointment, own});
  return plan;
}

IcalUpdate Compare(const RecordFile& file, IcalPlan plan) {
  IcalUpdate update;
  EXPECT_EQ(CompareWithCalendar(file, std::move(plan), update), CommandResult::kDone);
  return update;
}

// The subjects of all records, in order of the alphabet.
Texts Sorted(const RecordFile& file) {
  Texts subjects = tests::Subjects(file, tests::AllRecords(file));
  std::sort(subjects.begin(), subjects.end());
  return subjects;
}

std::string Fates(const IcalUpdate& update) {
  std::string letters;
  for (const IcalStep& step : update.steps) letters += "+*-=>xeol"[static_cast<int>(step.fate)];
  letters += ' ';
  for (const IcalLeftover& leftover : update.leftovers)
    letters += "+*-=>xeol"[static_cast<int>(leftover.fate)];
  return letters;
}

TEST(IcalUpdate, TakesWhatIsNewAndLeavesWhatTheUserDid) {
  const struct {
    const char* name;
    std::vector<Piece> there;
    std::vector<Piece> file;
    const char* fates;
    Texts after;
  } kCases[] = {
      {"new", {}, {{"a", 1, 1}, {"b", 2, 1}}, "++ ", {"a", "b"}},
      {"read before, edited and one deleted", {{"mine", 1, 1}}, {{"a", 1, 1}, {"b", 2, 1}}, "=x ", {"mine"}},
      {"another version",
       {{"a", 1, 1}, {"b", 2, 1}, {"c", 3, 1}},
       {{"A", 1, 2}, {"d", 4, 2}, {"e", 5, 2}},
       "*++ --",
       {"A", "d", "e"}},
      {"moved", {{"a", 1, 1}}, {{"A", 9, 2}}, "* ", {"A"}},
      {"older than the calendar", {{"a", 1, 2, 50}}, {{"A", 1, 1, 40}, {"B", 2, 1, 40}}, ">> ", {"a"}},
      {"as old, but another", {{"a", 1, 2, 50}}, {{"A", 1, 1, 50}}, "* ", {"A"}},
      {"of unknown age", {{"a", 1, 2, 50}}, {{"A", 1, 1}}, "* ", {"A"}},
      {"an update that broke off",
       {{"A", 1, 2, 50}, {"b", 2, 1, 40}},
       {{"A", 1, 2, 50}, {"B", 2, 2, 50}},
       "=* ",
       {"A", "B"}},
  };
  for (const auto& one : kCases) {
    TemporaryCalendar calendar;
    for (const Piece& piece : one.there) calendar.Add(Make(piece));
    IcalUpdate update = Compare(calendar.file, Plan(one.file));
    EXPECT_EQ(Fates(update), one.fates) << one.name;
    const IcalUpdateResult result = ApplyUpdate(calendar.file, update);
    EXPECT_EQ(result.result, CommandResult::kDone) << one.name;
    EXPECT_EQ(
        result.added + result.changed + result.deleted,
        update.Count(IcalFate::kAdd) + update.Count(IcalFate::kChange) + update.Count(IcalFate::kDelete));
    EXPECT_EQ(Sorted(calendar.file), one.after) << one.name;
    const std::string bytes = calendar.Bytes();
    update = Compare(calendar.file, Plan(one.file));
    EXPECT_EQ(Fates(update).find_first_of("+*-"), std::string::npos) << one.name << ": " << Fates(update);
    EXPECT_EQ(ApplyUpdate(calendar.file, update).result, CommandResult::kDone);
    EXPECT_EQ(calendar.Bytes(), bytes) << one.name << ": nothing is written the second time";
  }
}

TEST(IcalUpdate, AChangedRecordKeepsWhatAFileCannotSay) {
  TemporaryCalendar calendar;
  Entry old = Make({"a", 1, 1});
  WriteText(old.appointment.alarmTone, "/tone.wav");
  WriteText(old.appointment.alarmStartTarget, "/target");
  const std::uint64_t id = old.appointment.header.recordId;
  const std::int32_t place = calendar.Add(old);
  IcalPlan plan = Plan({{"A", 1, 2}});
  Appointment& planned = plan.records[0].record;
  planned.alarmOn = 1;
  planned.alarmDaysBefore = 2;
  WriteText(planned.header.category, "Calls");
  planned.repeat = {kRepeatDaily, kNoEndDate, 3, 0};
  IcalUpdate update = Compare(calendar.file, plan);
  ASSERT_EQ(ApplyUpdate(calendar.file, update).changed, 1U);
  Appointment now;
  ASSERT_TRUE(calendar.file.ReadRecord(&now, RecordKey{place, id}));
  EXPECT_EQ(ReadText(now.alarmTone), "/tone.wav");
  EXPECT_EQ(ReadText(now.alarmStartTarget), "/target");
  EXPECT_EQ(ReadText(now.header.category), "Calls");
  EXPECT_EQ(tests::Value(now.alarmDaysBefore), 2);
  EXPECT_EQ(tests::Value(now.importMark.version), 2U);
  EXPECT_TRUE(HasRepeat(now) && now.alarmOn == 1 && now.header.editLock == 0);
}

TEST(IcalUpdate, AnAppointmentOfOursIsFoundByItsId) {
  const struct {
    const char* name;
    Piece there;
    std::vector<Piece> file;
    const char* fates;
    Texts after;
  } kCases[] = {
      {"as it was exported", {"a", 1, 0}, {{"a", 1, 5}}, "= ", {"a"}},
      {"edited here since", {"mine", 1, 0}, {{"a", 1, 5}}, "= ", {"mine"}},
      {"edited there", {"a", 1, 0}, {{"A", 2, 5, 99}}, "* ", {"A"}},
      {"written anew there, as it was", {"a", 1, 0}, {{"a", 1, 5, 99}}, "= ", {"a"}},
      {"in several pieces here", {"a", 1, 0}, {{"a", 1, 5}, {"a", 2, 5}}, "== ", {"a"}},
      {"cut up there", {"a", 1, 0}, {{"A", 1, 5, 99}, {"B", 2, 5, 99}}, "*+ ", {"A", "B"}},
  };
  for (const auto& one : kCases) {
    TemporaryCalendar calendar;
    Entry entry = Make(one.there, 0);
    entry.appointment.importMark = {};
    const std::uint64_t id = entry.appointment.header.recordId;
    calendar.Add(entry);
    calendar.Add(Entry("of nobody"));
    Texts after = one.after;
    after.emplace_back("of nobody");
    IcalUpdate update = Compare(calendar.file, Plan(one.file, true, id));
    EXPECT_EQ(Fates(update), one.fates) << one.name;
    EXPECT_EQ(ApplyUpdate(calendar.file, update).result, CommandResult::kDone);
    EXPECT_EQ(Sorted(calendar.file), after) << one.name;
    EXPECT_EQ(Fates(Compare(calendar.file, Plan(one.file, true, id))).find_first_of("+*-"),
              std::string::npos);
    // It comes back, and to another calendar, as the one that it was.
    TemporaryCalendar other;
    update = Compare(other.file, Plan(one.file, true, id));
    EXPECT_EQ(ApplyUpdate(other.file, update).added, one.file.size());
    EXPECT_EQ(tests::AllRecords(other.file).KeyAt(0).id, id) << one.name;
    EXPECT_EQ(Fates(Compare(other.file, Plan(one.file, true, id))).find_first_of("+*-"), std::string::npos);
  }
}

TEST(IcalUpdate, RightsAndEvents) {
  const TemporaryCalendar::Passwords passwords{"own", "assist", "read"};
  TemporaryCalendar calendar(passwords);
  calendar.Add(Make({"hidden", 1, 1}).Confidential());
  Entry event = Make({"event", 2, 1}, 8);
  event.appointment.header.eventFlag = 1;
  calendar.Add(event);
  IcalPlan plan = Plan({{"H", 1, 2}});
  plan.records.push_back({Make({"E", 2, 2}, 8).appointment, false});
  plan.records.push_back({Make({"private", 3, 1}, 9).Confidential().appointment, false});
  const std::string before = calendar.Bytes();
  calendar.file.SetPassword("read");
  IcalUpdate update;
  EXPECT_EQ(CompareWithCalendar(calendar.file, plan, update), CommandResult::kReader);
  EXPECT_EQ(ApplyUpdate(calendar.file, update).result, CommandResult::kReader);
  calendar.file.SetPassword("assist");
  update = Compare(calendar.file, plan);
  EXPECT_EQ(Fates(update), "=eo ");
  EXPECT_EQ(ApplyUpdate(calendar.file, update).result, CommandResult::kDone);
  EXPECT_EQ(calendar.Bytes(), before);
  calendar.file.SetPassword("own");
  update = Compare(calendar.file, plan);
  EXPECT_EQ(Fates(update), "*e+ ");
  // The password is changed while the user looks at the plan.
  calendar.file.SetPassword("assist");
  update.steps[0].fate = IcalFate::kThere;
  EXPECT_EQ(ApplyUpdate(calendar.file, update).added, 0U);
  EXPECT_EQ(calendar.Bytes(), before);
}

TEST(IcalUpdate, NothingOfOthersIsOverwrittenUnseen) {
  TemporaryCalendar calendar;
  const auto key = [&calendar](const Piece& piece) {
    const Entry entry = Make(piece);
    const std::uint64_t id = entry.appointment.header.recordId;
    return RecordKey{calendar.Add(entry), id};
  };
  const RecordKey locked = key({"locked", 1, 1});
  const RecordKey edited = key({"edited", 2, 1});
  const RecordKey deleted = key({"deleted", 3, 1});
  const RecordKey leftover = key({"leftover", 4, 1});
  IcalUpdate update =
      Compare(calendar.file, Plan({{"L", 1, 2}, {"E", 2, 2}, {"D", 3, 2}, {"new", 9, 2}, {"n", 8, 2}}));
  ASSERT_EQ(Fates(update), "***++ -");
  // A second copy of the program works on the file and imports the same one.
  RecordFile other(calendar.Path(), "");
  EditLock lock(other);
  ASSERT_EQ(lock.Take(locked), CommandResult::kDone);
  Appointment record;
  for (const RecordKey& one : {edited, leftover}) {
    ASSERT_TRUE(other.ReadRecord(&record, one));
    WriteText(record.subject, "theirs");
    ASSERT_EQ(other.WriteRecord(&record, one), Result::kDone);
  }
  ASSERT_EQ(other.DeleteRecord(deleted), Result::kDone);
  const Entry theirs = Make({"new of theirs", 9, 2});
  ASSERT_EQ(other.AddRecord(&theirs.appointment), Result::kDone);
  const IcalUpdateResult result = ApplyUpdate(calendar.file, update);
  EXPECT_EQ(result.result, CommandResult::kDone);
  EXPECT_EQ(result.added, 1U);
  EXPECT_EQ(result.changed + result.deleted, 0U);
  EXPECT_EQ(Fates(update), "lll=+ l");
  EXPECT_EQ(Sorted(calendar.file), (Texts{"locked", "n", "new of theirs", "theirs", "theirs"}));
  ASSERT_EQ(lock.Release(), CommandResult::kDone);
}

TEST(IcalUpdate, BreaksOffBetweenEvents) {
  IcalPlan plan;
  for (std::uint64_t uid = 1; uid <= 100; ++uid) {
    for (int day = 1; day <= 10; ++day) plan.records.push_back({Make({"x", day, 1}, uid).appointment, false});
  }
  const auto whole = [](const RecordFile& file) {
    EXPECT_EQ(tests::AllRecords(file).Count() % 10, 0U)
        << "an event is there with all its pieces or not at all";
    return tests::AllRecords(file).Count();
  };
  {
    TemporaryCalendar calendar;
    IcalUpdate update = Compare(calendar.file, plan);
    const IcalUpdateResult result =
        ApplyUpdate(calendar.file, update, [](std::int64_t done, std::int64_t) { return done < 500; });
    EXPECT_TRUE(result.cancelled && result.result == CommandResult::kDone);
    EXPECT_EQ(result.added, whole(calendar.file));
    update = Compare(calendar.file, plan);
    EXPECT_EQ(ApplyUpdate(calendar.file, update).added, 1000 - result.added);
  }
  {
    TemporaryCalendar calendar;
    IcalUpdate update = Compare(calendar.file, plan);
    RecordFile other(calendar.Path(), "");
    IcalUpdate theirs = Compare(other, plan);
    EXPECT_EQ(ApplyUpdate(other, theirs).added, 1000U);
    EXPECT_EQ(ApplyUpdate(calendar.file, update).added, 0U) << "somebody has just imported the same file";
    EXPECT_EQ(update.Count(IcalFate::kThere), 1000U);
  }
  // The disk is full at one write or another, among free slots and behind them.
  for (int nth = 1; nth < 700; nth += 37) {
    TemporaryCalendar calendar;
    for (int i = 0; i < 25; ++i) calendar.Add(Entry("gone"));
    const RecordQuery gone = tests::AllRecords(calendar.file);
    for (const RecordKey& key : gone.Keys()) {
      ASSERT_EQ(calendar.file.DeleteRecord(key), Result::kDone);
    }
    IcalUpdate update = Compare(calendar.file, plan);
    IcalUpdateResult result;
    {
      tests::FaultyCalls faults;
      faults.Fail(tests::FaultyCalls::kWrite, nth, ENOSPC);
      result = ApplyUpdate(calendar.file, update);
    }
    EXPECT_EQ(result.added, whole(calendar.file)) << nth;
    EXPECT_EQ(result.added == 1000, IsMade(result.result)) << nth;
    update = Compare(calendar.file, plan);
    EXPECT_EQ(ApplyUpdate(calendar.file, update).added, 1000 - result.added) << nth;
  }
}

}  // namespace
}  // namespace core
