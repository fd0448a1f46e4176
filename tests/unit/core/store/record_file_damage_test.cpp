// What a record file makes of damaged files, full disks and calls that fail.
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>

#include "core/store/record_query.h"
#include "gtest/gtest.h"
#include "support/child_process.h"
#include "support/faulty_calls.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using tests::FaultyCalls;
using tests::TemporaryCalendar;
using tests::TemporaryFolder;

// A whole calendar file of nobody, to be damaged.
std::string SoundFile() {
  TemporaryCalendar calendar;
  calendar.Add(Entry("a"));
  calendar.Add(Entry("b"));
  calendar.file.Close();
  return calendar.Bytes();
}

std::string With(std::string bytes, std::size_t offset, std::string_view part) {
  return bytes.replace(offset, part.size(), part);
}

std::size_t LiveRecords(const RecordFile& file) {
  return tests::AllRecords(file).Count();
}

TEST(RecordFileDamage, UnsuitableFilesAreRefusedAndLeftAlone) {
  const std::string sound = SoundFile();
  const std::string huge("\xFF\xFF\xFF\xFF", 4);
  const struct {
    const char* what;
    std::string bytes;
    OpenError error;
  } kCases[] = {
      {"empty", "", OpenError::kCutHeader},
      {"file header cut", sound.substr(0, 11), OpenError::kCutHeader},
      {"header block cut", sound.substr(0, 1000), OpenError::kCutHeader},
      {"category block cut", sound.substr(0, 2624), OpenError::kCutHeader},
      {"header size", With(sound, 0, huge), OpenError::kWrongSizes},
      {"category size", With(sound, 4, std::string(4, '\0')), OpenError::kWrongSizes},
      {"slot size huge", With(sound, 8, huge), OpenError::kWrongSlotSize},
      {"slot size zero", With(sound, 8, std::string(4, '\0')), OpenError::kWrongSlotSize},
      {"slot size of another kind", With(sound, 8, std::string("\x5B\x03\0\0", 4)),
       OpenError::kWrongSlotSize},
      {"kind", With(sound, 16, "Calender"), OpenError::kUnknownKind},
      {"kind in other case", With(sound, 16, "calendar"), OpenError::kUnknownKind},
  };
  const TemporaryFolder folder;
  for (const auto& damaged : kCases) {
    const std::string path = folder.Write("damaged.cld", damaged.bytes);
    {
      RecordFile file(path, "");
      EXPECT_EQ(file.LastOpenError(), damaged.error) << damaged.what;
      EXPECT_FALSE(file.IsOpen());
      EXPECT_EQ(LiveRecords(file), 0U);
    }
    EXPECT_EQ(folder.Read("damaged.cld"), damaged.bytes) << damaged.what;
  }
}

TEST(RecordFileDamage, CutSlotIsNotReadAndIsOverwritten) {
  const TemporaryFolder folder;
  const std::string sound = SoundFile();
  RecordFile file(folder.Write("cut.cld", sound.substr(0, sound.size() - 1)), "");
  ASSERT_FALSE(file.OpenFailed());
  EXPECT_EQ(LiveRecords(file), 1U);
  Appointment read;
  EXPECT_FALSE(file.ReadSlot(&read, 5252) || file.LockRecord(5252));
  EXPECT_EQ(file.WriteRecord(&read, 5252), Result::kFailed);
  EXPECT_EQ(file.DeleteRecord(5252), Result::kFailed);
  const Entry entry("whole");
  ASSERT_EQ(file.AddRecord(&entry.appointment), Result::kDone);
  ASSERT_TRUE(file.ReadRecord(&read, 5252));
  EXPECT_EQ(ReadText(read.subject), "whole");
  EXPECT_EQ(folder.Read("cut.cld").size(), sound.size());
}

// Offsets have 31 bits. The file is a hole but for its first bytes and a slot at the limit.
TEST(RecordFileDamage, FileBeyondTheLargestOffset) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("first"));
  constexpr std::int64_t kLastSlot = 2625 + (std::int64_t{INT32_MAX} - 2625) / 2627 * 2627;
  ASSERT_EQ(truncate(calendar.Path().c_str(), kLastSlot), 0);
  EXPECT_EQ(calendar.Add(Entry("last")), kLastSlot);

  const std::uintmax_t size = std::filesystem::file_size(calendar.Path());
  const HeaderBlock before = calendar.Header();
  const Entry entry("beyond");
  EXPECT_EQ(calendar.file.AddRecord(&entry.appointment), Result::kFailed);
  EXPECT_EQ(std::filesystem::file_size(calendar.Path()), size);
  const HeaderBlock after = calendar.Header();
  EXPECT_EQ(std::memcmp(&before, &after, sizeof after), 0);

  // Another program appended live slots beyond the limit: they have no address.
  {
    std::FILE* raw = std::fopen(calendar.Path().c_str(), "r+b");
    ASSERT_NE(raw, nullptr);
    fseeko(raw, kLastSlot + 2627, SEEK_SET);
    std::fwrite(&entry.appointment, sizeof entry.appointment, 1, raw);
    std::fclose(raw);
  }
  std::vector<char> slots(kSlotsPerRead * 2627);
  EXPECT_EQ(calendar.file.ReadSlots(slots.data(), kLastSlot - 5L * 2627), 6);
  EXPECT_EQ(calendar.file.ReadSlots(slots.data(), kLastSlot + 2627), 0);
}

TEST(RecordFileDamage, FreeSlotThatCouldNotBeTakenIsStillKnown) {
  TemporaryCalendar calendar;
  EXPECT_EQ(calendar.file.DeleteRecord(calendar.Add(Entry("a"))), core::Result::kDone);
  const Entry entry("b");
  {
    FaultyCalls faults;
    faults.Fail(FaultyCalls::kWrite, 2, EIO);  // the slot, after the balance
    EXPECT_EQ(calendar.file.AddRecord(&entry.appointment), Result::kFailed);
  }
  EXPECT_EQ(tests::Value(calendar.Header().freeSlotBalance), -1);
  EXPECT_EQ(calendar.file.AddRecord(&entry.appointment), Result::kDone);
  EXPECT_EQ(calendar.file.SlotsEnd(), 2625 + 2627);
}

TEST(RecordFileDamage, AFileWhoseUsersCannotBeCountedIsNotOpened) {
  TemporaryCalendar calendar;
  const std::string before = calendar.Bytes();
  FaultyCalls faults;
  faults.Fail(FaultyCalls::kWrite, 1, EIO, FaultyCalls::kForEver);
  EXPECT_EQ(RecordFile(calendar.Path(), "").LastOpenError(), OpenError::kWriteFailed);
  EXPECT_EQ(calendar.Bytes(), before);
}

// A copy that stands still inside a write must not make the others write over its steps.
TEST(RecordFileDamage, NothingIsWrittenWhileAnotherHoldsTheGuard) {
  TemporaryCalendar calendar;
  calendar.Add(Entry("a"));
  tests::ChildProcess child([&](const tests::ChildProcess::Signal& ready) {
    platform::File file;
    file.OpenShared(calendar.Path());
    const platform::FileGuard guard(file);
    ready();
    for (;;) pause();
    return 0;
  });
  ASSERT_TRUE(child.Ready());
  const std::string before = calendar.Bytes();
  const Entry entry("b");
  EXPECT_EQ(calendar.file.AddRecord(&entry.appointment), Result::kFailed);
  EXPECT_EQ(calendar.Bytes(), before);
  child.Kill();
  EXPECT_EQ(calendar.file.AddRecord(&entry.appointment), Result::kDone);
}

}  // namespace
}  // namespace core
