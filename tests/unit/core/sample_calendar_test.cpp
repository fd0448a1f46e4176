// What is found in a calendar of 1,200 slots that another program made, against what that program says it
// must be. Its days are looked at in the running program (tests/desktop/sample_days_test.cpp).
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>

#include "core/repeat_rule.h"
#include "gtest/gtest.h"
#include "platform/system/code_page.h"
#include "support/json.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Json;

const std::string kData = DAYBRIX_SOURCE_FOLDER "/tests/data/";

std::string Id(const Appointment& appointment) {
  char text[17];
  std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(appointment.header.recordId));
  return text;
}

class SampleCalendar : public testing::Test {
 protected:
  static std::set<std::string> Ids(const RecordFile& file, const RecordQuery& query) {
    std::set<std::string> ids;
    Appointment record;
    for (const std::int32_t offset : query.Offsets()) {
      EXPECT_TRUE(file.ReadRecord(&record, offset));
      ids.insert(Id(record));
    }
    return ids;
  }

  static std::set<std::string> Texts(const Json& list) {
    std::set<std::string> texts;
    for (const Json& item : list.items) texts.insert(item.text);
    return texts;
  }

  std::string Copy() const {
    std::string path = folder.Join("office.cld");
    std::filesystem::copy_file(kData + "office.cld", path);
    return path;
  }

  static Json ReadExpected() {
    std::ifstream stream(kData + "office.expected.json");
    return Json::Parse({std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()});
  }

  tests::TemporaryFolder folder;
  RecordFile file{Copy(), ""};
  const Json expected = ReadExpected();
};

TEST_F(SampleCalendar, FindAndRange) {
  for (const auto& [utf8, ids] : expected["find"].fields) {
    std::string text;
    ASSERT_TRUE(platform::CodePageFromUtf8(utf8, text));
    RecordQuery query;
    query.AddTextCondition(offsetof(Appointment, subject), 150, ConditionOp::kContains, text, Connector::kOr);
    query.AddTextCondition(offsetof(Appointment, notes), 1024, ConditionOp::kContains, text, Connector::kOr);
    ASSERT_TRUE(query.Run(file) && query.Sort(file, kDateTimeOrder));
    EXPECT_EQ(Ids(file, query), Texts(ids)) << utf8;
  }
  const DateRange range{{1, 3, 2004}, {31, 3, 2004}};
  RecordQuery query;
  query.AddCallbackCondition(0, &range, sizeof range, OccursInRange, Connector::kAnd);
  ASSERT_TRUE(query.Run(file) && query.Sort(file, kListOrder));
  EXPECT_EQ(Ids(file, query), Texts(expected["range_2004_03"]));
}

TEST_F(SampleCalendar, SlotsAndLocks) {
  int live = 0;
  int free = 0;
  int confidential = 0;
  int locked = 0;
  Appointment slot;
  for (std::int32_t offset = file.FirstSlotOffset(); file.ReadSlot(&slot, offset); offset += sizeof slot) {
    const RecordHeader& record = slot.header;
    ++(record.inUse == 1 ? live : free);
    confidential += record.inUse == 1 ? record.confidential : 0;
    locked += record.editLock;
  }
  EXPECT_EQ(live, expected["live"].number);
  EXPECT_EQ(free, expected["free"].number);
  EXPECT_EQ(confidential, expected["confidential_live"].number);
  EXPECT_EQ(locked, expected["locked"].number);
}

}  // namespace
}  // namespace core
