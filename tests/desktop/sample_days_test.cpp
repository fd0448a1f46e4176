// Forty-four days of the sample calendar in the running program, against the lists of the program that made
// it.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <set>

#include "platform/system/code_page.h"
#include "platform/system/file.h"
#include "support/calendar_program.h"
#include "support/json.h"
#include "support/temporary_folder.h"

namespace tests {
namespace {

constexpr std::size_t kMostBytes = 8 << 20;

std::string SampleFile(const char* name) {
  std::string bytes;
  platform::ReadWholeFile(std::string(DAYBRIX_SOURCE_FOLDER "/tests/data/") + name, kMostBytes, bytes);
  return bytes;
}

// Two rows with the same first eight characters may stand in any order.
constexpr std::size_t kKeyLength = 8;

std::string Row(bool allDay, int slot, const std::string& id, const std::string& category,
                const std::string& subject) {
  char key[kKeyLength + 1];
  std::snprintf(key, sizeof key, "%d %05d ", allDay ? 0 : 1, allDay ? 0 : slot);
  return key + id + " [" + category + "] " + subject;
}

std::string Id(const core::Appointment& appointment) {
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(appointment.header.recordId));
  return text;
}

std::string RowOf(const core::Appointment& shown) {
  return Row(shown.allDay != 0, core::TimeSlot(shown.startTime), Id(shown),
             platform::Utf8FromCodePage(core::ReadText(shown.header.category)),
             platform::Utf8FromCodePage(core::ReadText(shown.subject)));
}

std::string RowOf(const Json& row) {
  return Row(row["allDay"].number != 0, static_cast<int>(row["slot"].number), row["id"].text,
             row["category"].text, row["subject"].text);
}

std::multiset<std::string> TextsOf(const Json& list) {
  std::multiset<std::string> texts;
  for (const Json& item : list.items) texts.insert(item.text);
  return texts;
}

std::multiset<std::string> IdsOf(const std::vector<core::Appointment>& shown) {
  std::multiset<std::string> ids;
  for (const core::Appointment& appointment : shown) ids.insert(Id(appointment));
  return ids;
}

core::Date DateOf(const std::string& iso) {
  return {std::stoi(iso.substr(8)), std::stoi(iso.substr(5, 2)), std::stoi(iso.substr(0, 4))};
}

class SampleDays : public testing::Test {
 protected:
  SampleDays() : path(folder.Write("office.cld", SampleFile("office.cld"))) {}

  // Shows every day of the sample and hands it over with what is expected of it.
  void ForEachDay(const std::function<void(const Json&)>& check) {
    const Json expected = Json::Parse(SampleFile("office.expected.json"));
    ASSERT_EQ(expected["days"].fields.size(), 44U);
    for (const auto& [date, lists] : expected["days"].fields) {
      SCOPED_TRACE(date);
      program.GoTo(DateOf(date));
      check(lists);
    }
  }

  TemporaryFolder folder;
  const std::string path;
  CalendarProgram program;
};

TEST_F(SampleDays, TheOwnerSeesEveryRowInOrder) {
  program.Run(path, [&] {
    ForEachDay([&](const Json& lists) {
      std::vector<std::string> rows;
      std::vector<std::string> wanted;
      for (const core::Appointment& appointment : program.Shown()) rows.push_back(RowOf(appointment));
      for (const Json& row : lists["owner"].items) wanted.push_back(RowOf(row));
      EXPECT_TRUE(
          std::is_sorted(rows.begin(), rows.end(), [](const std::string& left, const std::string& right) {
            return left.compare(0, kKeyLength, right, 0, kKeyLength) < 0;
          }));
      std::sort(rows.begin(), rows.end());
      std::sort(wanted.begin(), wanted.end());
      EXPECT_EQ(rows, wanted);
    });
  });
}

TEST_F(SampleDays, ACategoryHoldsOnEveryDay) {
  std::size_t found = 0;
  program.Run(path, [&] {
    program.ChooseCategory("Calls");
    ForEachDay([&](const Json& lists) {
      EXPECT_EQ(IdsOf(program.Shown()), TextsOf(lists["calls_ids"]));
      found += program.Shown().size();
    });
  });
  EXPECT_GT(found, 0U);
}

TEST_F(SampleDays, AReaderSeesNoConfidentialRow) {
  core::RecordFile(path, "").UpdateHeaderBlock([](core::HeaderBlock& header) {
    core::WriteText(header.assistantPassword, "assist");
    core::WriteText(header.readerPassword, "read");
    core::WriteText(header.ownerPassword, "own");
  });
  program.driver.WhenDialogOpens([&](HWND dialog) {
    program.driver.TypeInto(dialog, 100, "read");
    program.driver.Press(dialog, VK_RETURN);
  });
  program.Run(path, [&] {
    ForEachDay([&](const Json& lists) { EXPECT_EQ(IdsOf(program.Shown()), TextsOf(lists["reader_ids"])); });
  });
}

}  // namespace
}  // namespace tests
