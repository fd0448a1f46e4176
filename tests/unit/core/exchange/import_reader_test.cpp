// Lines of text taken apart, and what becomes of them in a calendar that is shared and on a disk that fills.
#include "core/exchange/import_reader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include "core/exchange/import_file.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

using core::ImportLine;

// All lines, a field between brackets, and "!" behind a line whose quote never ends.
std::string Lines(core::ImportReader& reader) {
  std::string all;
  std::vector<core::ImportText> fields;
  for (;;) {
    const ImportLine line = reader.ReadLine(fields);
    if (line == ImportLine::kEnd || line == ImportLine::kFailed) return all;
    for (const core::ImportText& field : fields) all += '[' + field.text + (field.replaced ? "#]" : "]");
    all += line == ImportLine::kUnended ? "!\n" : "\n";
  }
}

TEST(ImportReader, TakesLinesApart) {
  const std::pair<std::string, std::string> cases[] = {
      {"a,b\r\nc\r\n", "[a][b]\n[c]\n"},
      {"a,\r\n\r\n,b", "[a][]\n[][b]\n"},
      {"a\tb,c\r\n", "[a][b,c]\n"},
      {"a,b\nc\n\nd", "[a][b]\n[c]\n[d]\n"},
      {"a\nb,c\rd\r\ne", "[a\nb][c\rd]\n[e]\n"},
      {"\"a,b\",c\"d\r\n\"x\r\ny\",\"\"\r\n", "[a,b][c\"d]\n[x\r\ny][]\n"},
      {"\"say \"\"no\"\", twice\",\"b\"", "[say \"\"no\"\", twice][b]\n"},
      {"\"a\" b,c\r\nd", "!\n[d]\n"},
      {"\"a\" b,c\r\n\"d\"", "[a\" b,c\r\n\"d]\n"},
      {"\"a\",\"b\r\nc,d\r\n\"e\"", "[a]!\n[c][d]\n[e]\n"},
      {"\xEF\xBB\xBF\"\xC3\xA4\",\xE2\x82\xAC\r\n\xE6\x97\xA5!\xF0\x9F\x98\x80,\xC3\r\n",
       "[\xE4][\x80]\n[?!?#][?#]\n"},
      {"\xE4,\"b\"\r\n", "[\xE4][\"b\"]\n"},
      {std::string("a\0b,c", 5), std::string("[a\0b][c]\n", 9)},
  };
  for (const auto& [text, expected] : cases) {
    core::ImportReader reader;
    ASSERT_EQ(reader.Take(text), "");
    EXPECT_EQ(Lines(reader), expected) << text;
    reader.SetFormat(reader.Format());
    EXPECT_EQ(Lines(reader), expected) << "from the start again";
  }
}

// Whatever is long: fields, lines, and a file in which each break lies where a piece that is read ends.
TEST(ImportReader, KeepsOnlyWhatAnAppointmentHolds) {
  const std::string kept(core::ImportReader::kMostKept, 'x');
  const auto lines = [](const std::string& text) {
    core::ImportReader reader;
    EXPECT_EQ(reader.Take(text), "");
    return Lines(reader);
  };
  EXPECT_EQ(lines(std::string(600000, 'x') + ",b\r\nc"), '[' + kept + "][b]\n[c]\n");
  EXPECT_EQ(lines('"' + std::string(60000, 'x') + "\",b\r\n"), '[' + kept + "][b]\n");
  EXPECT_EQ(lines('"' + std::string(600000, 'x') + "\",b\r\nc"), "!\n[c]\n");
  // However many quotes were not closed, the next one is looked for as far.
  std::string open;
  std::string skipped;
  for (int i = 0; i < 101; ++i, skipped += "!\n") open += i % 3 == 0 ? "\"\"a\r\n" : "\"a\r\n";
  open += std::string(66000, 'x') + "\r\n\"" + std::string(60000, 'x') + "\",b";
  EXPECT_EQ(lines(open), skipped + '[' + kept + "]\n[" + kept + "][b]\n");
  const std::string columns = lines(std::string(10000, ',') + "\r\nc");
  EXPECT_EQ(std::count(columns.begin(), columns.end(), '['), 201);
  for (std::size_t before = 262140; before < 262146; ++before) {
    const std::string text = std::string(before, 'x') + "\r\n\"a\"\r\nb";
    core::ImportReader reader;
    ASSERT_EQ(reader.Take(text), "");
    reader.SetFormat({true, ',', '"'});
    EXPECT_EQ(Lines(reader), '[' + kept + "]\n[a]\n[b]\n") << before;
  }
}

class Batches : public testing::Test {
 protected:
  // A line each for `count` days.
  core::ImportResult Import(int count, const core::ExchangeProgress& progress = {}) {
    std::string text = "Date,Subject\r\n";
    for (int i = 0; i < count; ++i) text += "3/1/2004," + std::to_string(i) + "\r\n";
    core::ImportReader reader;
    EXPECT_EQ(reader.Take(text), "");
    return core::ImportFile(calendar.file, reader, {0, 5}, progress);
  }
  std::uint64_t Counter() const { return calendar.Header().changeCounter; }

  TemporaryCalendar calendar;
};

TEST_F(Batches, FreeSlotsAreTakenAndOthersSeeEachBatch) {
  std::array<std::int32_t, 5> offsets;
  for (std::int32_t& offset : offsets) offset = calendar.Add(Entry("old"));
  for (const std::int32_t offset : {offsets[1], offsets[3]}) {
    ASSERT_EQ(calendar.file.DeleteRecord(offset), core::Result::kDone);
  }
  const std::uint64_t before = Counter();
  EXPECT_EQ(Import(600).added, 600);
  EXPECT_EQ(Counter(), before + 3);
  const std::int32_t balance = calendar.Header().freeSlotBalance;
  EXPECT_EQ(balance, 0);
  EXPECT_EQ(calendar.file.SlotsEnd(), core::kFirstSlotOffset + 603 * 2627);
  const std::vector<std::string> subjects = Subjects(calendar.file, AllRecords(calendar.file));
  ASSERT_EQ(subjects.size(), 603U);
  EXPECT_EQ(std::vector(subjects.begin(), subjects.begin() + 7),
            (std::vector<std::string>{"old", "0", "old", "1", "old", "2", "3"}));
  EXPECT_EQ(subjects.back(), "599");
}

// What is said to be added is there, whichever write fails, and the rest has left no trace.
TEST_F(Batches, AFullDiskLeavesWhatWasCounted) {
  ASSERT_EQ(calendar.file.DeleteRecord(calendar.Add(Entry("old"))), core::Result::kDone);
  for (int nth = 1; nth < 530; nth += nth < 10 ? 1 : 97) {
    const std::size_t before = AllRecords(calendar.file).Count();
    core::ImportResult result;
    {
      FaultyCalls faults;
      faults.Fail(FaultyCalls::kWrite, nth, ENOSPC, FaultyCalls::kForEver);
      result = Import(520);
    }
    EXPECT_EQ(result.end, core::ImportEnd::kNotAdded) << nth;
    EXPECT_EQ(AllRecords(calendar.file).Count(), before + static_cast<std::size_t>(result.added)) << nth;
    EXPECT_EQ(calendar.Bytes().size(), static_cast<std::size_t>(calendar.file.SlotsEnd())) << nth;
    EXPECT_NE(core::DescribeImport(calendar.file, result)
                  .find(std::to_string(result.added) +
                        (result.added == 1 ? " appointment was" : " appointments were")),
              std::string::npos);
  }
}

TEST_F(Batches, EndBetweenLines) {
  int asked = 0;
  const core::ImportResult result =
      Import(1000, [&asked](std::int64_t done, std::int64_t whole) { return ++asked < 301 && done < whole; });
  EXPECT_EQ(result.end, core::ImportEnd::kCancelled);
  EXPECT_EQ(result.added, 300);
  EXPECT_EQ(AllRecords(calendar.file).Count(), 300U);
}

}  // namespace
}  // namespace tests
