// The mini calendar with its grid, and the date picker dialog.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "framework/date_word.h"
#include "framework/services.h"
#include "pickers/date_picker.h"
#include "support/desktop_driver.h"
#include "support/era.h"
#include "support/host_window.h"
#include "support/recording_dc.h"
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
  // What choosing an item of a selector sends.
  void Choose(unsigned item) { SendMessage(calendar.Handle(), WM_COMMAND, item, 0); }
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
  EXPECT_TRUE(calendar.SetDate(2004, 3, 14));
  EXPECT_FALSE(calendar.SetDate(2004, 3, 14)) << "no change";
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

TEST_F(Pickers, DatesOutsideTheCalendarAreRefusedAndLongDaysCut) {
  calendar.SetDate(2004, 3, 14);
  for (const auto& [year, month, day] : {std::tuple{core::kFirstYear - 1, 12, 31},
                                         {core::LastYear() + 1, 1, 1},
                                         {2004, 0, 1},
                                         {2004, 13, 1},
                                         {2004, 3, 0}})
    EXPECT_FALSE(calendar.SetDate(year, month, day)) << year << "-" << month << "-" << day;
  EXPECT_EQ(Text(calendar.Date()), "14.3.2004");
  EXPECT_TRUE(calendar.SetDate(2003, 2, 31));
  EXPECT_EQ(Text(calendar.Date()), "28.2.2003");
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
  calendar.SetDate(2000, 2, 29);
  Choose(2001);
  EXPECT_EQ(Told(), Texts{"0 28.2.2001"});
  Choose(0);
  EXPECT_EQ(Told(), Texts{"0 28.1.2001"});
  Choose(12);
  Choose(static_cast<unsigned>(core::LastYear()) + 1);
  EXPECT_EQ(Told(), Texts{});

  auto& years = *static_cast<TFlyMenu*>(ObjectFromHandle(PartAt({20, 5})));
  auto& months = *static_cast<TFlyMenu*>(ObjectFromHandle(PartAt({60, 5})));
  EXPECT_STREQ(years.Caption(), "2001");
  EXPECT_STREQ(months.Caption(), "January");
  EXPECT_EQ(years.ItemCount(), static_cast<std::size_t>(core::LastYear() - core::kFirstYear + 1));
  EXPECT_EQ(months.ItemCount(), 12u);
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

TEST_F(Pickers, ACalendarWithoutRoomStaysWhole) {
  calendar.Move(100, 50, 3, 2, 1);
  driver.Wait(20);
  SendMessage(calendar.Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MakeLParam(1, 1));
  calendar.Move(100, 50, 108, 130, 1);
  driver.Wait(20);
  EXPECT_EQ(Told(), Texts{});
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

}  // namespace
