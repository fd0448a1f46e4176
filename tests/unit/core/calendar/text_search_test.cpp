#include "core/calendar/text_search.h"

#include "gtest/gtest.h"
#include "support/temporary_calendar.h"

namespace core {
namespace {

using tests::Entry;
using Subjects = std::vector<std::string>;

TEST(TextSearch, FindsOrdersAndFollows) {
  tests::TemporaryCalendar calendar(tests::TemporaryCalendar::Passwords{"o", "a", ""});
  const auto on20 = [](const char* subject) { return Entry(subject).On(20, 3, 2004); };
  const std::int32_t lunch = calendar.Add(on20("Business LUNCH").At(12, 0).AllDay());
  calendar.Add(on20("x").Notes("after lunch").At(9, 0));
  calendar.Add(Entry("lunch").Category("Calls").Every(1, kRepeatDaily).Confidential());
  calendar.Add(Entry("lunc").Category("h"));
  TextSearch search;
  ASSERT_TRUE(search.Run(calendar.file, "lunCh", "CALLS"));
  EXPECT_EQ(tests::Subjects(calendar.file, search), Subjects{"lunch"});
  ASSERT_TRUE(search.Run(calendar.file, "lunCh"));
  EXPECT_EQ(tests::Subjects(calendar.file, search), (Subjects{"lunch", "x", "Business LUNCH"}));
  EXPECT_TRUE(search.Run(calendar.file, "xaf") && search.Count() == 0) << "one text, then the other";
  ASSERT_TRUE(search.Run(calendar.file, "lunCh"));
  EXPECT_FALSE(search.RefreshIfChanged(calendar.file));
  const RecordFile assistant(calendar.Path(), "a");
  ASSERT_EQ(calendar.file.DeleteRecord(lunch), Result::kDone);
  EXPECT_TRUE(search.RefreshIfChanged(assistant));
  EXPECT_EQ(tests::Subjects(calendar.file, search), Subjects{"x"});
}

}  // namespace
}  // namespace core
