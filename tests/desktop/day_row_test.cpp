// How the rows of the day list are drawn.
#include "calendar/views/day_row.h"

#include <gtest/gtest.h>

#include "calendar/views/palette.h"
#include "core/time_texts.h"
#include "framework/fonts.h"
#include "resources/resources.h"
#include "support/desktop_driver.h"
#include "support/recording_dc.h"
#include "support/temporary_calendar.h"

namespace tests {
namespace {

constexpr RECT kCell = {0, 29, 280, 58};
constexpr RECT kRow = {5, 30, 275, 57};

class DayRow : public testing::Test {
 protected:
  DayRow() {
    RegisterResources();
    pictures = LoadDayRowPictures();
    core::SetClockMode(core::ClockMode::k24Hours);
  }
  void Draw(const Entry& entry, RowSelection selection = RowSelection::kNone) {
    hdc.calls.clear();
    DrawDayRow(&hdc, &entry.appointment, pictures, selection, kCell);
  }
  static Entry Marked() {
    Entry entry = Entry("Subject").At(13, 5).Category("Calls").Confidential().Every(1, core::kRepeatDaily);
    entry.appointment.alarmOn = 1;
    entry.appointment.attachmentKind = core::kAttachedUrl;
    core::WriteText(entry.appointment.attachment, "a");
    return entry;
  }

  DesktopDriver driver;
  DayRowPictures pictures;
  RecordingDc hdc;
};

TEST_F(DayRow, ATimedRowHasTimesMarksCategoryAndSubject) {
  Draw(Marked());
  const DrawingCall* times = hdc.FindText("13:05-13:05");
  ASSERT_NE(times, nullptr);
  EXPECT_EQ(times->colour, kRowText);
  EXPECT_EQ(times->rect, (RECT{kRow.left, kRow.top, kRow.right, 43}));
  const DrawingCall* subject = hdc.FindText("Subject");
  ASSERT_NE(subject, nullptr);
  EXPECT_EQ(subject->rect.left, kRow.left + 20);
  EXPECT_EQ(subject->rect.top, 43);
  const std::vector<DrawingCall> marks = hdc.Of(DrawingKind::kBitmap);
  ASSERT_EQ(marks.size(), 4U);
  const std::pair<const Bitmap*, int> expected[] = {{pictures.marks.padlock.get(), 100},
                                                    {pictures.marks.bell.get(), 112},
                                                    {pictures.marks.paperClip.get(), 126},
                                                    {pictures.marks.squares.get(), 138}};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(marks[i].bitmap, expected[i].first) << i;
    EXPECT_EQ(marks[i].rect.left, expected[i].second) << i;
  }
  const DrawingCall* category = hdc.FindText("[Calls]");
  ASSERT_NE(category, nullptr);
  EXPECT_EQ(category->rect.left, 150);
  EXPECT_EQ(category->colour, kRowMark);
  EXPECT_EQ(category->font, GetFont(FontSmall, 400));
  EXPECT_EQ(hdc.ColourAt({kRow.left, kRow.bottom}), kRowLine);
}

TEST_F(DayRow, APlainRowHasNoMarksAndWideTimesPushThemAside) {
  Draw(Entry("Subject"));
  EXPECT_TRUE(hdc.Of(DrawingKind::kBitmap).empty());
  EXPECT_EQ(hdc.Of(DrawingKind::kText).size(), 2U);
  core::SetClockMode(core::ClockMode::k12Hours);
  Draw(Marked());
  const DrawingCall* times = hdc.FindText("01:05 pm-01:05 pm");
  ASSERT_NE(times, nullptr);
  EXPECT_GE(hdc.Of(DrawingKind::kBitmap)[0].rect.left,
            kRow.left + MeasureText(times->font, times->text.c_str()).cx);
}

TEST_F(DayRow, TheSelectionIsLighterWhileTheKeyboardIsElsewhere) {
  Draw(Entry("Subject"), RowSelection::kFocused);
  EXPECT_EQ(hdc.ColourAt({1, 40}), kSelection);
  EXPECT_EQ(hdc.ColourAt({kRow.left, kRow.bottom}), kSelection) << "a selected row has no line";
  Draw(Entry("Subject"), RowSelection::kIdle);
  EXPECT_EQ(hdc.ColourAt({1, 40}), kIdleSelection);
}

TEST_F(DayRow, AnAllDayRowIsABandWithItsSubjectAfterTheMarks) {
  Draw(Marked().AllDay());
  const std::vector<DrawingCall> band = hdc.Of(DrawingKind::kStretch);
  ASSERT_EQ(band.size(), 3U);
  EXPECT_EQ(band[0].rect, (RECT{5, 31, 275, 55}));
  EXPECT_EQ(band[2].rect.left, 271);
  EXPECT_EQ(hdc.Of(DrawingKind::kBitmap)[0].rect, (RECT{12, 38, 12, 38}));
  const DrawingCall* category = hdc.FindText("[Calls]");
  const DrawingCall* subject = hdc.FindText("Subject");
  ASSERT_TRUE(category != nullptr && subject != nullptr);
  const auto ascent = [](const DrawingCall& call) { return GetTextMetrics(call.font).ascent; };
  const int subjectTop = 31 + (24 - GetTextMetrics(subject->font).height) / 2;
  EXPECT_EQ(category->rect.top + ascent(*category), subjectTop + ascent(*subject)) << "one baseline";
  EXPECT_GT(subject->rect.left, category->rect.left + MeasureText(category->font, "[Calls]").cx);
  EXPECT_EQ(hdc.FindText("13:05-13:05"), nullptr);
  Draw(Entry("Alone").AllDay());
  EXPECT_EQ(hdc.FindText("Alone")->rect.left, 12);
  Draw(Entry("Room").AllDay().Category(std::string(29, 'W').c_str()));
  EXPECT_EQ(hdc.FindText("Room")->rect.left, 12 + Width(kRow) / 3 + 6) << "a third is enough for a category";
}

TEST_F(DayRow, FullFieldsAndARecordThatIsGone) {
  Entry full;
  std::memset(full.appointment.subject, 's', sizeof full.appointment.subject);
  std::memset(full.appointment.header.category, 'c', sizeof full.appointment.header.category);
  Draw(full);
  EXPECT_NE(hdc.FindText(std::string(150, 's')), nullptr);
  EXPECT_NE(hdc.FindText("[" + std::string(30, 'c') + "]"), nullptr);
  hdc.calls.clear();
  DrawDayRow(&hdc, nullptr, pictures, RowSelection::kNone, kCell);
  const DrawingCall* gone = hdc.FindText("Record is deleted by another user.");
  ASSERT_NE(gone, nullptr);
  EXPECT_EQ(gone->colour, kRowMark);
  EXPECT_EQ(hdc.calls.size(), 1U);
}

}  // namespace
}  // namespace tests
