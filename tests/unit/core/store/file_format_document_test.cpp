// docs/file-format.md is what others write their programs by, so its tables and its worked example are held
// true here: the example is read out of the document and made again byte for byte.
#include <algorithm>
#include <cstring>
#include <map>

#include "core/contacts/contact.h"
#include "core/events/participant.h"
#include "gtest/gtest.h"
#include "support/document.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

constexpr std::size_t kExampleSize = 2625 + 2 * 2627;

// The documented file, made with the program's own structures.
std::string MadeExample() {
  HeaderBlock header;
  std::memset(&header, 0, sizeof header);
  header.blockSize = sizeof header;
  WriteText(header.kind, "Calendar");
  WriteText(header.kindDetail, "Organizer");
  header.formatWord = header.secondFormatWord = header.thirdFormatWord = 1;
  WriteText(header.ownerIdentity.userName, "Nora Finch");
  WriteText(header.ownerIdentity.email, "nora@example.org");
  WriteText(header.ownerPassword, "Own1");
  WriteText(header.readerPassword, "Rd1");
  WriteText(header.secondIdentity.userName, "Daybrix");
  WriteText(header.secondIdentity.email, "DaybrixMail");
  WriteText(header.serverAddress, "events.example");
  WriteText(header.serverPort, "4711");
  header.freeSlotBalance = -1;
  header.changeCounter = 13;
  CategoryBlock categories{};
  categories.blockSize = sizeof categories;
  categories.count = 2;
  WriteText(categories.entries[0].name, "Calls");
  WriteText(categories.entries[1].name, "Meetings");
  categories.entries[0].value = categories.entries[1].value = -1;

  Appointment weekly{};
  InitRecordHeader(weekly.header, sizeof weekly, header);
  weekly.header.recordId = 0x0123456789ABCDEF;
  weekly.header.creationDate = weekly.header.secondDate = {27, 2, 2004};
  weekly.header.creationTime = weekly.header.secondTime = {4, 40, 12, kAfterNoon};
  WriteText(weekly.header.category, "Meetings");
  weekly.date = {1, 3, 2004};
  weekly.startTime = {1, 30, 0, kAfterNoon};
  weekly.endTime = {2, 15, 0, kAfterNoon};
  weekly.repeat = {kRepeatWeekly, {31, 12, 2020}, 2, 0x22};
  WriteText(weekly.subject, "Caf\xE9 round");
  Appointment deleted{};
  deleted.header = weekly.header;
  deleted.header.inUse = 0;
  deleted.header.recordId = 0x1122334455667788;
  deleted.header.confidential = 1;
  WriteText(deleted.header.category, "");
  deleted.date = {14, 3, 2004};
  deleted.startTime = deleted.endTime = {0, 0, 0, kBeforeNoon};
  deleted.allDay = 1;
  WriteText(deleted.subject, "Moving day");

  const FileHeader sizes{1581, 1032, 2627};
  std::string bytes;
  const auto append = [&bytes](const auto& part) {
    bytes.append(reinterpret_cast<const char*>(&part), sizeof part);
  };
  append(sizes);
  append(header);
  append(categories);
  append(weekly);
  append(deleted);
  return bytes;
}

TEST(FileFormatDocument, ExampleIsWhatTheProgramWrites) {
  const std::string documented = tests::DocumentedBytes("file-format.md", "hex", kExampleSize);
  const std::string made = MadeExample();
  ASSERT_EQ(made.size(), documented.size());
  const auto different = std::mismatch(made.begin(), made.end(), documented.begin()).first;
  EXPECT_EQ(different, made.end()) << "at offset " << different - made.begin();
}

TEST(FileFormatDocument, SlotsOfOtherKindsAreWhatTheProgramWrites) {
  Contact contact{};
  contact.header.recordSize = sizeof contact;
  contact.header.inUse = 1;
  contact.header.recordId = 0x8877665544332211;
  SetContact(contact, "Ann Lee", "ann@example.org");
  Participant participant = NewParticipant(0x0123456789ABCDEF, "Ann Lee", "ann@example.org");
  participant.state = kAccepted;
  const std::string documented = tests::DocumentedBytes("file-format.md", "hex contact", sizeof contact);
  EXPECT_EQ(std::memcmp(&contact, documented.data(), sizeof contact), 0);
  const std::string other = tests::DocumentedBytes("file-format.md", "hex participant", sizeof participant);
  EXPECT_EQ(std::memcmp(&participant, other.data(), sizeof participant), 0);
}

// Each table of fields names every byte of its structure once, in order.
TEST(FileFormatDocument, TablesAreWithoutGapsAndAgreeWithTheCode) {
  std::map<std::string, std::size_t> ends;
  std::map<std::string, std::size_t> offsets;
  std::string title;
  for (const std::string& line : tests::DocumentLines("file-format.md")) {
    if (line.starts_with("#")) title = line.substr(line.find(' ') + 1);
    std::size_t offset = 0;
    std::size_t size = 0;
    char name[64] = "";
    if (std::sscanf(line.c_str(), "| %zu | %zu | `%63[^`]`", &offset, &size, name) < 2) continue;
    EXPECT_EQ(offset, ends.contains(title) ? ends[title] : offset) << title << ": " << line;
    ends[title] = offset + size;
    offsets[title + "." + name] = offset;
  }
  const std::map<std::string, std::size_t> expectedEnds = {
      {"Date", 12},           {"TimeOfDay", 16},        {"ServerIdentity", 205}, {"File header", 12},
      {"Header block", 1581}, {"Category block", 1032}, {"Record header", 549},  {"Appointment body", 2627},
      {"Repeat rule", 21},    {"Import mark", 19},      {"Contact body", 859},   {"Participant body", 908}};
  EXPECT_EQ(ends, expectedEnds);
  const std::pair<const char*, std::size_t> kOffsets[] = {
      {"Header block.changeCounter", offsetof(HeaderBlock, changeCounter)},
      {"Header block.ownerPassword", offsetof(HeaderBlock, ownerPassword)},
      {"Header block.openCount", offsetof(HeaderBlock, openCount)},
      {"Record header.recordId", offsetof(RecordHeader, recordId)},
      {"Record header.eventFlag", offsetof(RecordHeader, eventFlag)},
      {"Appointment body.alarmOn", offsetof(Appointment, alarmOn)},
      {"Appointment body.repeat", offsetof(Appointment, repeat)},
      {"Appointment body.alarmDaysBefore", offsetof(Appointment, alarmDaysBefore)},
      {"Appointment body.date", offsetof(Appointment, date)},
      {"Appointment body.notes", offsetof(Appointment, notes)},
      {"Contact body.email", offsetof(Contact, email)},
      {"Participant body.eventId", offsetof(Participant, eventId)},
      {"Record header.eventSubject", offsetof(RecordHeader, eventSubject)},
      {"Appointment body.importMark", offsetof(Appointment, importMark)},
      {"Import mark.ordinal", offsetof(ImportMark, ordinal)},
      {"Repeat rule.repeatParam", offsetof(RepeatRule, repeatParam)}};
  for (const auto& [field, offset] : kOffsets) EXPECT_EQ(offsets[field], offset) << field;
}

}  // namespace
}  // namespace core
