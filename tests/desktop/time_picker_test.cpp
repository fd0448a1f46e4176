// The time track, its list of times and the dialog around them.
#include "pickers/time_picker.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "core/time_texts.h"
#include "platform/desktop/message_box.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/screen_reader.h"
#include "support/windows.h"

namespace {

core::TimeOfDay At(int hour, int minute) {
  return {hour % 12, minute, 0, hour < 12 ? core::kBeforeNoon : core::kAfterNoon};
}

std::string Text(const TimeRange& range) {
  return core::FormatTime(range.start) + "-" + core::FormatTime(range.end);
}

TEST(TimeRanges, WhatCannotBePickedBecomesTheFirstTimeThatCan) {
  const std::pair<TimeRange, const char*> cases[] = {
      {{At(7, 0), At(23, 0)}, "07:00-23:00"},     {{At(6, 55), At(8, 0)}, "07:00-07:00"},
      {{At(9, 3), At(22, 58)}, "07:00-07:00"},    {{At(9, 3), At(8, 0)}, "09:03-08:00"},
      {{At(9, 0), At(23, 5)}, "07:00-07:00"},     {{At(23, 5), At(9, 0)}, "07:00-07:00"},
      {{At(9, 0), {-1, 99, 0, 7}}, "07:00-07:00"}};
  for (const auto& [range, picked] : cases) EXPECT_EQ(Text(PickableRange(range)), picked) << Text(range);
}

TEST(TimeRanges, TheEndFollowsMouseAndKeys) {
  EXPECT_EQ(DurationLabel({At(10, 50), At(12, 5)}), "01:15");
  EXPECT_EQ(DurationLabel({At(7, 0), At(22, 5)}), "15:05");
  EXPECT_EQ(DurationLabel({At(9, 0), At(8, 0)}), "00:00");
  // 200 pixels from y 20 to 220 for the 120 slots to 23:00.
  const TrackLayout layout{74, 258, {At(13, 0), At(14, 0)}};
  const std::pair<int, const char*> heights[] = {{-9, "13:00"},  {20, "13:00"},   {21, "13:00"},
                                                 {22, "13:05"},  {120, "18:00"},  {219, "22:55"},
                                                 {220, "23:00"}, {60000, "23:00"}};
  for (const auto& [y, end] : heights) EXPECT_EQ(core::FormatTime(EndAtHeight(layout, y)), end) << y;
  const TrackLayout full{74, 258, {At(23, 0), At(23, 0)}};
  EXPECT_EQ(core::FormatTime(EndAtHeight(full, 100)), "23:00") << "a track without length";
  EXPECT_EQ(core::FormatTime(Later(At(11, 58), 5)) + core::FormatTime(Later(At(23, 50), 60)), "12:0323:55");
  const std::pair<unsigned, const char*> keys[] = {{VK_UP, "13:55"},    {VK_DOWN, "14:05"},
                                                   {VK_PRIOR, "13:00"}, {VK_NEXT, "15:00"},
                                                   {VK_HOME, "13:00"},  {VK_END, "23:00"}};
  for (const auto& [key, end] : keys) EXPECT_EQ(core::FormatTime(*KeyEnd(key, layout.times)), end) << key;
  EXPECT_EQ(core::FormatTime(*KeyEnd(VK_DOWN, {At(22, 0), At(23, 0)})), "23:00");
}

class TimePicker : public testing::Test {
 protected:
  // What a script picks; "none" when it cancels.
  std::string Pick(const TimeRange& start, TimePicking picking, const std::function<void(HWND)>& script) {
    driver.WhenDialogOpens(script);
    TimePickerDialog dialog(start, picking);
    return dialog.Run(&host) ? Text(dialog.Times()) : "none";
  }
  static HWND TrackOf(HWND dialog) { return WindowFromPoint(ClientToScreen(dialog, {40, 10})); }
  static HWND PartAt(HWND dialog, POINT point) { return WindowFromPoint(ClientToScreen(dialog, point)); }

  DesktopDriver driver;
  HostWindow host;
};

TEST_F(TimePicker, TakingHoldOfTheMarkerMovesNothing) {
  EXPECT_EQ(Pick({At(7, 0), At(9, 3)}, TimePicking::kRange,
                 [&](HWND dialog) {
                   const RECT client = tests::ClientOf(TrackOf(dialog));
                   const int marker = MarkerHandle({client.right, client.bottom, {At(7, 0), At(9, 3)}});
                   driver.MouseDown(TrackOf(dialog), {30, marker + 12});
                   driver.ProcessEvents();
                   EXPECT_EQ(GetCapture(), TrackOf(dialog));
                   driver.MouseUp(TrackOf(dialog), {30, marker});
                   driver.ClickControl(dialog, IDOK);
                 }),
            "07:00-09:03");
}

TEST_F(TimePicker, TheMarkerIsDraggedAndLetsGoOfTheMouse) {
  EXPECT_EQ(Pick({At(13, 0), At(15, 0)}, TimePicking::kRange,
                 [&](HWND dialog) {
                   const HWND track = TrackOf(dialog);
                   ASSERT_EQ(GetClassName(track), "ZarfTimeTrack");
                   const RECT client = tests::ClientOf(track);
                   const TrackLayout layout{client.right, client.bottom, {At(13, 0), At(15, 0)}};
                   const int marker = MarkerHandle(layout) + 12;
                   driver.MouseDown(track, {30, marker});
                   driver.MoveMouse(track, {200, client.bottom + 90});  // kept on the track
                   driver.MouseUp(track, {30, client.bottom - 1});
                   EXPECT_EQ(GetCapture(), nullptr);
                   driver.MoveMouse(track, {30, 60});
                   driver.Press(dialog, VK_PRIOR);
                   driver.ClickControl(dialog, IDOK);
                 }),
            "13:00-22:00");
}

TEST_F(TimePicker, TheListGivesTheStart) {
  EXPECT_EQ(Pick({At(6, 30), At(8, 0)}, TimePicking::kRange,
                 [&](HWND dialog) {
                   driver.Press(dialog, VK_F1 + 3);
                   driver.Press(dialog, VK_DOWN);
                   driver.Press(dialog, VK_ESCAPE);  // the list's
                   driver.Press(dialog, VK_DOWN, 0, true);
                   driver.Press(dialog, VK_DOWN);
                   driver.Press(dialog, VK_RETURN);
                   ASSERT_TRUE(IsWindow(dialog));
                   driver.Press(dialog, VK_DOWN);
                   driver.Click(PartAt(dialog, {6, 10}), {3, 5});  // opens it again
                   const HWND list = PartAt(dialog, {30, 100});
                   ASSERT_EQ(GetClassName(list), "ZarfWndList");
                   EXPECT_EQ(GetFocus(), list);
                   driver.Click(PartAt(dialog, {6, 10}), {3, 5});
                   driver.Press(dialog, VK_RETURN);
                 }),
            "07:05-07:10");
}

TEST_F(TimePicker, ASingleTimeIsChosenByKeysOrADoubleClick) {
  EXPECT_EQ(Pick({At(9, 0), At(9, 0)}, TimePicking::kSingle,
                 [&](HWND dialog) {
                   driver.Press(dialog, VK_DOWN);
                   driver.Press(dialog, VK_RETURN);
                 }),
            "09:05-09:05");
  EXPECT_EQ(Pick({At(7, 0), At(9, 0)}, TimePicking::kSingle,
                 [&](HWND dialog) {
                   driver.DoubleClick(PartAt(dialog, {30, kTrackTop + 15}), {20, 26});
                 }),
            "07:10-07:10");
}

TEST_F(TimePicker, WhoDoesNotSeeItReadsStartEndAndDuration) {
  Pick({At(13, 0), At(14, 15)}, TimePicking::kRange, [&](HWND dialog) {
    ScreenReader reader;
    const std::string read = reader.Read(TrackOf(dialog));
    EXPECT_TRUE(read.starts_with("Slider \"Time\" (13:00 to 14:15, duration 01:15) = 15/120")) << read;
    reader.MoveSlider(TrackOf(dialog), 24);
    driver.ProcessEvents();
    EXPECT_NE(reader.Read(TrackOf(dialog)).find("15:00, duration 02:00"), std::string::npos);
    driver.ClickControl(dialog, IDCANCEL);
  });
}

}  // namespace
