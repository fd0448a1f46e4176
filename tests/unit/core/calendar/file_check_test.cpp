// What the check of a whole file finds, and that it changes nothing.
#include "core/calendar/file_check.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::TemporaryCalendar;
using tests::TemporaryFolder;
using Texts = std::vector<std::string>;

constexpr std::size_t kFirst = 2625;
constexpr std::size_t kSecond = 2625 + 2627;

Texts Findings(const std::string& path) {
  Texts texts;
  EXPECT_EQ(
      CheckFile(path,
                [&texts](const Finding& finding) {
                  texts.push_back(std::to_string(finding.offset) + " " + finding.where + ": " + finding.what);
                  return true;
                }),
      OpenError::kNone);
  return texts;
}

// A calendar of two records that nobody has open.
std::string SoundFile() {
  TemporaryCalendar calendar;
  calendar.Add(Entry("a").Every(2, kRepeatWeekly, 0x22));
  calendar.Add(Entry("b").Every(1, kRepeatYearly, 2 << 16 | 29).Until(1, 3, 2004));
  calendar.file.Close();
  return calendar.Bytes();
}

template <typename T>
void Put(std::string& bytes, std::size_t offset, T value) {
  std::memcpy(bytes.data() + offset, &value, sizeof value);
}

template <typename T>
void PutIn(std::string& bytes, std::size_t field, T value) {
  Put(bytes, kFirst + field, value);
}

using Bytes = std::string;

std::string InFirst(const char* what) {
  return std::string("2625 slot: ").append(what);
}

struct Damage {
  const char* name;
  void (*damage)(Bytes& bytes);
  Texts findings;
};

const std::vector<Damage> kDamages = {
    {"sound", [](Bytes&) {}, {}},
    {"sizes",
     [](Bytes& b) {
       Put<std::uint32_t>(b, 0, 0);
       Put<std::uint32_t>(b, 4, 0xFFFFFFFF);
       Put<std::uint32_t>(b, 8, 0x7FFFFFFF);
     },
     {"0 file header: headerBlockSize is 0, not 1581",
      "4 file header: categoryBlockSize is 4294967295, not 1032",
      "8 file header: slotSize is 2147483647, not 2627"}},
    {"kind", [](Bytes& b) { b[16] = 'X'; }, {"16 header block: it names no kind of file that is known"}},
    {"counts",
     [](Bytes& b) {
       Put<std::uint32_t>(b, 12 + 1018, 3);
       Put<std::int32_t>(b, 12 + 1006, -2);
       Put<std::uint32_t>(b, 1593 + 8, 31);
     },
     {"1030 header block: openCount is 3, but nobody has the file open",
      "1601 category block: count is 31, but there is room for 30",
      "1018 header block: freeSlotBalance is -2, but 0 slots are free"}},
    {"more categories than are kept",
     [](Bytes& b) {
       for (std::size_t i = 0; i < 29; ++i) b[1593 + 12 + 34 * i] = 'c';
       Put<std::uint32_t>(b, 1593 + 8, 32);
     },
     {}},
    {"tail", [](Bytes& b) { b += "xyz"; }, {"7879 end of file: 3 bytes that are no whole slot"}},
    {"bytes",
     [](Bytes& b) {
       Put<std::uint32_t>(b, kFirst, 859);
       b[kFirst + 5] = 1;
       b[kFirst + 14] = 2;
       b[kSecond + 4] = 7;
     },
     {InFirst("recordSize is 859, not 2627"), InFirst("its edit lock is set, but nobody has the file open"),
      InFirst("confidential is 2, neither 0 nor 1"), "5252 slot: inUse is 7, neither 0 nor 1"}},
    {"texts",
     [](Bytes& b) {
       b.replace(12 + 217, 20, 20, 'p');
       b.replace(1593 + 12, 30, 30, 'c');
       b.replace(kFirst + 16, 30, 30, 'c');
       b.replace(kFirst + 1453, 150, 150, 's');
     },
     {"229 header block: ownerPassword has no terminator", "1605 category block: name has no terminator",
      InFirst("category has no terminator"), InFirst("subject has no terminator")}},
    {"days and times",
     [](Bytes& b) {
       PutIn<Date>(b, 1405, {31, 2, 2004});
       PutIn<TimeOfDay>(b, 1417, {9, 57, 0, 1});
       PutIn<TimeOfDay>(b, 1433, {9, 0, 0, 3});
       PutIn<Date>(b, 826, {1, 1, 1999});
       b[kFirst + 549] = 1;
     },
     {InFirst("date is 2004-2-31, no day of the calendar"),
      InFirst("startTime is hour 9, minute 57, half 1, no time of day"),
      InFirst("endTime is hour 9, minute 0, half 3, no time of day"),
      InFirst("alarmDate is 1999-1-1, no day of the calendar"),
      InFirst("alarmTime is hour 0, minute 0, half 0, no time of day")}},
    {"ids",
     [](Bytes& b) { b.replace(kSecond + 6, 8, b.substr(kFirst + 6, 8)); },
     {"5252 slot: its recordId is also that of the record at 2625"}},
    // What a free slot still holds has no meaning.
    {"free slot",
     [](Bytes& b) {
       b.replace(kFirst + 5, 2600, 2600, '\xFF');
       b[kFirst + 4] = 0;
       Put<std::int32_t>(b, 12 + 1006, -1);
     },
     {}},
};

TEST(FileCheck, NamesEachFaultAndItsPlace) {
  const std::string sound = SoundFile();
  const TemporaryFolder folder;
  for (const Damage& damaged : kDamages) {
    std::string bytes = sound;
    damaged.damage(bytes);
    EXPECT_EQ(Findings(folder.Write("a.cld", bytes)), damaged.findings) << damaged.name;
    EXPECT_EQ(folder.Read("a.cld"), bytes) << damaged.name;
    std::size_t told = 0;
    const auto end = [&told](const Finding&) { return ++told < 1; };
    EXPECT_EQ(CheckFile(folder.Join("a.cld"), end), OpenError::kNone);
    EXPECT_EQ(told, std::min<std::size_t>(damaged.findings.size(), 1)) << "it ends when it is told";
  }
}

TEST(FileCheck, TellsWhereAFileThatIsNoneEnds) {
  const std::string sound = SoundFile();
  const TemporaryFolder folder;
  for (const auto& [size, part] : {std::pair{"0", "file header"}, std::pair{"100", "header block"},
                                   std::pair{"2000", "category block"}}) {
    const std::string path = folder.Write("a.cld", sound.substr(0, std::stoul(size)));
    EXPECT_EQ(Findings(path),
              Texts{size + std::string(" ") + part + ": the file ends in it, after " + size + " bytes"});
  }
}

TEST(FileCheck, NamesEachFaultOfARepeatRule) {
  const struct {
    RepeatRule rule;
    Texts findings;
  } kCases[] = {{{kRepeatWeekly, {0, 0, 0}, 100, 0x80},
                 {"repeatParam 128 is no set of weekdays", "repeatEvery is 100, not 1 to 99",
                  "repeatEnd is 0-0-0, no day of the calendar"}},
                {{kRepeatMonthly, {29, 2, 2004}, 1, 32},
                 {"repeatParam 32 is no day of a month", "it ends before it begins"}},
                {{kRepeatYearly, kNoEndDate, 1, 2 << 16 | 30}, {"repeatParam 131102 is no day of a year"}},
                {{3, kNoEndDate, 2, 0x22}, {"repeatType 3 is unknown"}},
                {{kRepeatNone, kNoEndDate, 2, 0x22}, {"repeatType is 0, but the rest is not"}}};
  const TemporaryFolder folder;
  std::string bytes = SoundFile();
  for (const auto& [rule, findings] : kCases) {
    PutIn(bytes, 1360, rule);
    Texts expected;
    for (const std::string& finding : findings) expected.push_back(InFirst("repeat rule: ") + finding);
    EXPECT_EQ(Findings(folder.Write("a.cld", bytes)), expected);
  }
}

TEST(FileCheck, LocksAndCountsOfOthersAreTheirs) {
  TemporaryCalendar calendar;
  const std::int32_t offset = calendar.Add(Entry("a"));
  ASSERT_TRUE(calendar.file.LockRecord(offset));
  const std::string before = calendar.Bytes();
  EXPECT_EQ(Findings(calendar.Path()), Texts());
  EXPECT_EQ(calendar.Bytes(), before);
  EXPECT_TRUE(calendar.file.UnlockRecord(offset));
}

TEST(FileCheck, GoesOnBehindWhatCannotBeRead) {
  const TemporaryFolder folder;
  std::string bytes = SoundFile();
  bytes[kSecond + 5] = 1;
  const std::string path = folder.Write("a.cld", bytes);
  tests::FaultyCalls faults;
  faults.Shorten(tests::FaultyCalls::kRead, 4, 2627, tests::FaultyCalls::kForEver);  // the slots
  faults.Fail(tests::FaultyCalls::kRead, 5, EIO);
  EXPECT_EQ(Findings(path), Texts{"5252 slot: 1 slots cannot be read"});
}

// Sparse, so that it takes no room: more than any offset can name, and every slot free.
TEST(FileCheck, AnEndlessFileEnds) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("a.cld", SoundFile());
  ASSERT_EQ(truncate(path.c_str(), std::int64_t{1} << 40), 0);
  const Texts findings = Findings(path);
  ASSERT_EQ(findings.size(), 3U);
  EXPECT_EQ(findings[0], "2147485807 slot: 417725215 slots lie beyond what an offset can name");
}

}  // namespace
}  // namespace core
