// The mini calendar with its grid, the time track with its list, and the dialogs around them.
#include <gtest/gtest.h>

#include "core/time_texts.h"
#include "framework/date_word.h"
#include "framework/services.h"
#include "pickers/date_picker.h"
#include "pickers/time_picker.h"
#include "platform/desktop/message_box.h"
#include "support/desktop_driver.h"
#include "support/era.h"
#include "support/host_window.h"
#include "support/recording_dc.h"
#include "support/screen_reader.h"
#include "support/windows.h"

namespace {

constexpr int kId = 102;
constexpr COLORREF kGround = RGB(255, 255, 195);
constexpr COLORREF kChosen = RGB(224, 219, 239);
constexpr COLORREF kRed = RGB(255, 0, 0);

std::string Text(const core::Date& date) {
  return std::to_string(date.day) + "." + std::to_string(date.month) + "." + std::to_string(date.year);
}

class Pickers : public testing::Test {
 protected:
  // 108 x 130 pixels, as in the panel: cells of 15 x 14 from y 29 on.
  Pickers() {
    calendar.Create(&host);
    calendar.Move(100, 50, 108, 130, 1);
    host.onCommand = [this](const HostWindow::Command& command) {
      if (command.id == kId) {
        told.push_back(std::to_string(command.code) + " " + Text(DateFromWord(command.value)));
      }
      return LRESULT{0};
    };
    driver.Wait(20);
  }

  HWND PartAt(POINT point) { return WindowFromPoint(ClientToScreen(calendar.Handle(), point)); }
  void ClickAt(POINT point) {
    const HWND part = PartAt(point);
    driver.Click(part, ScreenToClient(part, ClientToScreen(calendar.Handle(), point)));
  }
  void Previous() { ClickAt({5, 120}); }
  void Today() { ClickAt({54, 120}); }
  void Next() { ClickAt({103, 120}); }
  HWND Grid() { return PartAt({5, 35}); }
  POINT DayPoint(int day) {
    const RECT cell = DayCell({108, 85, calendar.Date().year, calendar.Date().month}, day);
    return ClientToScreen(Grid(), {cell.left + 3, cell.top + 3});
  }
  LRESULT Drop(unsigned command, POINT screenPoint) {
    return SendMessage(Grid(), WM_COMMAND, command, reinterpret_cast<LPARAM>(&screenPoint));
  }
  void ToFront(const HostWindow& window) {
    SetForegroundWindow(window.Handle());
    ASSERT_TRUE(driver.WaitUntil([&] { return GetForegroundWindow() == window.Handle(); }));
  }
  // Chooses in the menu of a selector.
  void ChooseIn(const TFlyMenu& selector, const std::string& item) {
    driver.ChooseMenuItem(item);
    driver.Click(selector.Handle(), {5, 7});
    ASSERT_TRUE(driver.WaitUntil([this] { return !told.empty(); }));
  }
  std::vector<std::string> Told() {
    driver.ProcessEvents();
    return std::exchange(told, {});
  }

  tests::Era era{core::kLateLastYear};
  DesktopDriver driver;
  HostWindow host;
  MiniCalendar calendar{kId, {kGround, kChosen, kRed}};
  std::vector<std::string> told;
};

using Texts = std::vector<std::string>;

TEST_F(Pickers, APickedDayIsTold) {
  EXPECT_TRUE(calendar.SetDate(2003, 2, 31));
  EXPECT_EQ(Text(calendar.Date()), "28.2.2003");
  EXPECT_TRUE(calendar.SetDate(2004, 3, 14));
  EXPECT_FALSE(calendar.SetDate(2004, 3, 14)) << "no change";
  EXPECT_FALSE(calendar.SetDate(core::kFirstYear - 1, 12, 31) || calendar.SetDate(2004, 13, 1));
  EXPECT_EQ(Told(), Texts{}) << "only users are told of";
  ASSERT_EQ(GetClassName(Grid()), "ZarfCalMonth");
  driver.Click(Grid(), {80, 5});
  EXPECT_EQ(Text(calendar.Date()), "5.3.2004");
  EXPECT_EQ(Told(), Texts{"0 5.3.2004"});
  driver.Click(Grid(), {5, 5});
  driver.Click(Grid(), {100, 80});
  EXPECT_EQ(Told(), Texts{}) << "days of the neighbour months are none";
  EXPECT_EQ(Text(calendar.Date()), "5.3.2004");
}

TEST_F(Pickers, ButtonsStepByMonthsAndStopAtTheCalendarsEdges) {
  calendar.SetDate(2004, 1, 31);
  Next();
  EXPECT_EQ(Told(), Texts{"0 29.2.2004"});
  Previous();
  EXPECT_EQ(Told(), Texts{"0 29.1.2004"});
  calendar.SetDate(core::kFirstYear, 1, 10);
  Previous();
  EXPECT_EQ(Told(), Texts{});
  calendar.SetDate(core::LastYear(), 12, 10);
  Next();
  EXPECT_EQ(Told(), Texts{});
  Today();
  EXPECT_EQ(Told(), Texts{"0 " + Text(core::Today())});
  Today();
  EXPECT_EQ(Told(), Texts{}) << "it is today already";
}

TEST_F(Pickers, YearAndMonthAreChosenAndShown) {
  calendar.SetDate(2001, 1, 28);
  auto& years = *static_cast<TFlyMenu*>(ObjectFromHandle(PartAt({20, 5})));
  auto& months = *static_cast<TFlyMenu*>(ObjectFromHandle(PartAt({60, 5})));
  EXPECT_STREQ(years.Caption(), "2001");
  EXPECT_STREQ(months.Caption(), "January");
  Next();
  EXPECT_STREQ(months.Caption(), "February");
  Told();

  ChooseIn(months, "January");
  EXPECT_EQ(Told(), Texts{"0 28.1.2001"}) << "through the real menu, where January is number 0";

  calendar.SetDate(2080, 2, 29);
  ChooseIn(years, "2099");
  EXPECT_EQ(Told(), Texts{"0 28.2.2099"});
  EXPECT_EQ(driver.LastMenuStart(), "2080") << "a hundred years scroll to the shown one";
}

TEST_F(Pickers, DropsAreTakenOnOtherDaysOfTheShownMonth) {
  calendar.SetDate(2004, 3, 14);
  ToFront(host);
  EXPECT_EQ(Drop(kDropQuery, DayPoint(20)), 1);
  EXPECT_EQ(Told(), Texts{}) << "a question is no drop";
  EXPECT_EQ(Drop(kDropMove, DayPoint(20)), 1);
  EXPECT_EQ(Drop(kDropCopy, DayPoint(21)), 1);
  EXPECT_EQ(Told(), (Texts{"1021 20.3.2004", "1022 21.3.2004"}));
  EXPECT_EQ(Text(calendar.Date()), "14.3.2004") << "whoever moves the appointment moves the date";

  EXPECT_EQ(Drop(kDropMove, DayPoint(14)), 1) << "the selected day takes it and does nothing";
  EXPECT_EQ(Told(), Texts{});
  const POINT february = ClientToScreen(Grid(), {3, 3});
  for (const unsigned command : {kDropQuery, kDropMove, kDropCopy}) EXPECT_EQ(Drop(command, february), 0);
  EXPECT_EQ(SendMessage(Grid(), WM_COMMAND, kDropMove, 0), 0);
  EXPECT_EQ(Told(), Texts{});
}

TEST_F(Pickers, NothingIsDroppedWhileAnotherWindowIsInFront) {
  calendar.SetDate(2004, 3, 14);
  const HostWindow other({400, 0, 500, 100});
  ToFront(other);
  EXPECT_EQ(Drop(kDropQuery, DayPoint(20)), 0);
  EXPECT_EQ(Drop(kDropMove, DayPoint(20)), 0);

  const POINT day = DayPoint(20);
  driver.WhenDialogOpens([&](HWND dialog) {
    EXPECT_EQ(Drop(kDropQuery, day), 0) << "a dialog over the main window";
    driver.ClickControl(dialog, IDCANCEL);
  });
  DatePickerDialog(calendar.Date()).Run(&host);
  EXPECT_EQ(Told(), Texts{});
}

TEST_F(Pickers, TheGridPaintsTheSelectedDayAndToday) {
  MonthGrid grid({kGround, kChosen, kRed});
  const auto [day, month, year] = core::Today();
  const int chosen = day == 14 ? 15 : 14;
  grid.SetDate(year, month, chosen);
  constexpr RECT kClient{0, 0, 108, 85};
  const MonthGridLayout layout{108, 85, year, month};
  RecordingDc dc;
  grid.Paint(&dc, kClient);
  EXPECT_EQ(dc.Of(DrawingKind::kText).size(), static_cast<std::size_t>(core::DaysInMonth(year, month)));
  const std::string today = std::to_string(day);
  ASSERT_NE(dc.FindText(today), nullptr);
  EXPECT_EQ(dc.FindText(today)->colour, kRed);
  EXPECT_EQ(dc.FindText(today)->rect, DayCell(layout, day));
  EXPECT_EQ(dc.FindText(std::to_string(chosen))->colour, RGB(0, 0, 0));
  const RECT cell = DayCell(layout, chosen);
  EXPECT_NE(dc.ColourAt({cell.left, cell.top}), dc.ColourAt({cell.right - 1, cell.bottom - 1})) << "an edge";
  EXPECT_NE(dc.ColourAt({cell.left, cell.top}), kChosen);
  // The frame stays in its cell.
  dc.ExpectColour(kChosen, {{cell.left + 2, cell.top + 2}});
  dc.ExpectColour(kGround, {{cell.left + 2, cell.bottom}, {cell.right, cell.top + 2}, {107, 84}});

  RecordingDc later;
  grid.SetDate(year > core::kFirstYear ? year - 1 : year + 1, month, chosen);
  grid.Paint(&later, kClient);
  for (const DrawingCall& call : later.Of(DrawingKind::kText)) EXPECT_EQ(call.colour, RGB(0, 0, 0));
}

TEST_F(Pickers, TheMiniCalendarPaintsItsWeekdaysOverTheColumns) {
  RecordingDc dc;
  calendar.Paint(&dc, {0, 0, 108, 130});
  const auto initials = dc.Of(DrawingKind::kText);
  ASSERT_EQ(initials.size(), 7u);
  std::string read;
  for (const DrawingCall& call : initials) read += call.text;
  EXPECT_EQ(read, "SMTWTFS");
  EXPECT_EQ(initials[0].colour, kRed);
  EXPECT_EQ(initials[6].colour, RGB(0, 0, 0));
  EXPECT_EQ(initials[6].rect, (RECT{90, 15, 105, 29}));
  dc.ExpectColour(0, {{105, 28}});
  dc.ExpectColour(kGround, {{106, 28}, {0, 0}});
}

class DatePicker : public Pickers {
 protected:
  // Runs the dialog, with what happens in it.
  bool Run(DatePickerDialog& dialog, const std::function<void(HWND)>& inside) {
    driver.WhenDialogOpens(inside);
    return dialog.Run(&host);
  }
  static HWND GridOf(HWND dialog) { return WindowFromPoint(ClientToScreen(dialog, {20, 50})); }
};

TEST_F(DatePicker, OkGivesTheDatePickedAndCancelSaysNo) {
  DatePickerDialog accepted({14, 3, 2004});
  EXPECT_TRUE(Run(accepted, [&](HWND dialog) {
    const HWND grid = GridOf(dialog);
    ASSERT_EQ(GetClassName(grid), "ZarfCalMonth");
    const RECT area = tests::ClientOf(grid);
    const RECT cell = DayCell({area.right, area.bottom, 2004, 3}, 25);
    driver.Click(grid, {cell.left + 2, cell.top + 2});
    EXPECT_TRUE(IsWindow(dialog)) << "a pick does not close it";
    EXPECT_LE(tests::PlaceOf(GetParent(grid)).bottom, tests::PlaceOf(GetDlgItem(dialog, IDOK)).top);
    EXPECT_GT(Height(area), 60) << "room for six weeks";
    driver.ClickControl(dialog, IDOK);
  }));
  EXPECT_EQ(Text(accepted.Date()), "25.3.2004");
  EXPECT_EQ(Told(), Texts{}) << "the window behind it hears nothing";

  DatePickerDialog cancelled({14, 3, 2004});
  EXPECT_FALSE(Run(cancelled, [&](HWND dialog) { driver.Press(dialog, VK_ESCAPE); }));
  DatePickerDialog strange({99, 99, 9999});
  EXPECT_TRUE(Run(strange, [&](HWND dialog) { driver.ClickControl(dialog, IDOK); }));
  EXPECT_EQ(Text(strange.Date()), Text(core::Today()));
}

TEST_F(DatePicker, OpensWhereItIsAskedToButOnTheDesktop) {
  const RECT desktop = DesktopRect();
  RECT where;
  for (const POINT wanted :
       {POINT{120, 90}, POINT{desktop.right - 5, desktop.bottom - 5}, POINT{-700, -700}}) {
    DatePickerDialog dialog({14, 3, 2004});
    dialog.SetPosition(wanted);
    dialog.SetAnimate(true);
    Run(dialog, [&](HWND window) {
      where = tests::PlaceOf(window);
      driver.ClickControl(window, IDCANCEL);
    });
    EXPECT_TRUE(wanted.x != 120 || (POINT{where.left, where.top}) == wanted);
    EXPECT_TRUE(where.left >= desktop.left && where.top >= desktop.top && where.right <= desktop.right &&
                where.bottom <= desktop.bottom)
        << wanted.x << ": " << where.left << "," << where.top;
  }
}

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
