// The month and the week: where days stand, what is drawn of them, what is read, and how they are worked.
#include <gtest/gtest.h>

#include "calendar/dialogs/appointment_editor.h"
#include "calendar/panel_layout.h"
#include "calendar/views/month_week_views.h"
#include "core/store/edit_lock.h"
#include "core/time_texts.h"
#include "framework/date_word.h"
#include "support/calendar_program.h"
#include "support/era.h"
#include "support/faulty_calls.h"
#include "support/host_window.h"
#include "support/recording_dc.h"
#include "support/screen_reader.h"
#include "support/temporary_calendar.h"
#include "support/windows.h"

namespace tests {
namespace {

using Texts = std::vector<std::string>;
constexpr core::Date kToday{14, 3, 2004};
// Before anything asks for the time.
[[maybe_unused]] const bool clockIsSet = setenv("DAYBRIX_CLOCK", "2004-03-14T10:43:12", 1) == 0;
constexpr COLORREF kLineGrey = RGB(220, 220, 220);

TEST(DayGridGeometry, DaysStandInTheirCells) {
  const Era era(core::kEarlyLastYear);
  const struct {
    GridShape shape;
    core::Date date;
    int count;
    int last;  // the cell of the last day, counted along the rows
  } kCases[] = {{GridShape::kMonth, {15, 5, 2004}, 31, 36},  // begins on a Saturday: six rows
                {GridShape::kMonth, {1, 2, 2015}, 28, 27},   // begins on a Sunday: four
                {GridShape::kWeek, kToday, 7, 6},            // a Sunday ends its week
                {GridShape::kWeek, {8, 3, 2004}, 7, 6},
                {GridShape::kWeek, {31, 12, 2020}, 4, 3},  // a Thursday, after which there is nothing
                {GridShape::kWeek, {2, 1, 2000}, 0, -1}};  // its Monday is before the calendar
  for (const auto& [shape, date, count, last] : kCases) {
    const GridDays days = DaysAround(shape, date);
    EXPECT_TRUE(days.count == count && count - 1 + days.column == last) << core::FormatDate(date);
    EXPECT_EQ(DayOf(days, date) >= 0, count > 0) << core::FormatDate(date);
  }
  // What is left over at the right and at the bottom is nobody's, and so are four more pixels.
  const GridDays may = DaysAround(GridShape::kMonth, {1, 5, 2004});
  EXPECT_EQ(GridCell(GridShape::kMonth, {0, 0, 706, 607}, may, 1), (RECT{0, 101, 100, 202}));
  const RECT client = {0, 0, 706, 607};  // 100 x 100 pixels for each day that is pressed
  const std::pair<POINT, int> kPresses[] = {{{600, 0}, 0},    {{699, 99}, 0},   {{700, 99}, -1},
                                            {{599, 99}, -1},  {{0, 100}, 1},    {{99, 500}, 29},
                                            {{100, 599}, 30}, {{100, 600}, -1}, {{200, 500}, -1}};
  for (const auto& [point, day] : kPresses)
    EXPECT_EQ(GridDayAt(GridShape::kMonth, client, may, point), day) << point.x << "," << point.y;
  const std::pair<int, int> kRoom[] = {{0, 0}, {20, 0}, {21, 1}, {30, 1}, {31, 2}, {101, 9}};
  for (const auto& [height, lines] : kRoom) EXPECT_EQ(CellLines(height), lines) << height;
}

TEST(DayGridPainting, TheGroundIsDrawnToThePixel) {
  const DesktopDriver driver;
  for (const int width : {700, 701}) {
    RecordingDc hdc;
    const RECT client = {0, 0, width, 607};
    DrawGridGround(&hdc, client, GridShape::kMonth, {});
    EXPECT_EQ(hdc.Of(DrawingKind::kPolygon).at(0).corners,
              (std::vector<POINT>{{0, 0}, {318, 0}, {159, 505}}));
    EXPECT_EQ(hdc.Of(DrawingKind::kEllipse).at(0).rect, (RECT{width - 233, 20, width + 233, 627}));
    EXPECT_EQ(hdc.Of(DrawingKind::kEllipse).at(1).rect, (RECT{420, 303, width == 700 ? 980 : 981, 910}));
    EXPECT_EQ(hdc.FindText("Fr")->rect, (RECT{510, 0, 610, 10}));
    EXPECT_EQ(hdc.FindText("Sa") != nullptr, width == 701) << "only where its right edge is inside";
    EXPECT_EQ(hdc.Of(DrawingKind::kLine).size(), 6U + 5U);
    hdc.ExpectColour(kLineGrey, {{100, 0}, {600, 606}, {0, 101}, {699, 505}});
    for (const DrawingCall& call : hdc.calls) EXPECT_EQ(call.region, client);
  }
  RecordingDc week;
  DrawGridGround(&week, {0, 0, 403, 300}, GridShape::kWeek, {});
  EXPECT_EQ(week.Of(DrawingKind::kLine).size(), 3U + 1U);
  week.ExpectColour(kLineGrey, {{100, 5}, {300, 5}, {5, 150}});
  EXPECT_TRUE(week.Of(DrawingKind::kText).empty());
  for (const int size : {0, 3, 13}) DrawGridGround(&week, {0, 0, size, size}, GridShape::kMonth, {});
}

// A month in a window of its own: 100 x 101 pixels a day.
class DayGridWindow : public testing::Test {
 protected:
  DayGridWindow() {
    core::SetClockMode(core::ClockMode::k12Hours);
    calendar.Add(Entry("Later").On(14, 3, 2004).At(11, 0).Category("Calls"));
    gone = calendar.Add(Entry("Gone").On(14, 3, 2004).At(9, 0));
    calendar.Add(Entry("Whole").On(14, 3, 2004).AllDay());
    calendar.Add(Entry("Secret").On(14, 3, 2004).AllDay().Confidential());
    calendar.Add(Entry("Daily").On(1, 3, 2004).At(18, 5).Every(1, core::kRepeatDaily));
  }
  void Show(const char* password = "own") {
    session.Take(std::make_unique<core::RecordFile>(calendar.Path(), password));
    month.Create(&host);
    month.Move(0, 0, 701, 607, 1);
    month.ShowSession();
    month.Show();
    driver.Wait(20);
  }
  // The lines under the head of a day that is on the paint, from the top.
  Texts LinesOf(int day) {
    RecordingDc hdc;
    const RECT client = month.ClientArea();
    month.Paint(&hdc, client);
    const RECT cell =
        GridCell(GridShape::kMonth, client, DaysAround(GridShape::kMonth, month.ViewDate()), day - 1);
    Texts lines;
    for (const DrawingCall& call : hdc.Of(DrawingKind::kText)) {
      const auto line = static_cast<int>(lines.size());
      if (call.rect == CellLine(cell, line)) lines.push_back(call.text);
    }
    return lines;
  }
  // A file that has rested is listed without being read again.
  void Settle() {
    driver.Wait(50);
    month.Relist();
  }
  void Press(unsigned key) { SendMessage(month.Handle(), WM_KEYDOWN, key, 0); }

  DesktopDriver driver;
  TemporaryCalendar calendar{{.owner = "own", .assistant = "", .reader = "read"}};
  std::int32_t gone = 0;
  core::CalendarSession session;
  HostWindow host{{0, 0, 701, 607}};
  MonthView month{session};
};

TEST_F(DayGridWindow, ShowsWhatThePasswordTheFilterAndTheRoomAllow) {
  Show();
  EXPECT_EQ(LinesOf(14), (Texts{"Whole", "Secret", "09:00a Gone", "11:00a Later", "06:05p Daily"}));
  EXPECT_EQ(LinesOf(15), Texts{"06:05p Daily"});
  RecordingDc hdc;
  month.Paint(&hdc, month.ClientArea());
  EXPECT_EQ(hdc.FindText("14")->colour, RGB(255, 0, 0)) << "today";
  EXPECT_EQ(hdc.FindText("15")->colour, RGB(0, 0, 255));
  const DrawingCall* title = hdc.FindText("March 2004");
  EXPECT_EQ(title->colour, RGB(64, 64, 255));
  EXPECT_EQ(title->rect, (RECT{501, 572, 696, 592}));
  EXPECT_EQ(title->format, DT_SINGLELINE | DT_RIGHT | DT_BOTTOM);
  session.SetFilter("calls");
  month.Relist();
  EXPECT_EQ(LinesOf(14), Texts{"11:00a Later"});
  session.SetFilter("");
  session.Take(std::make_unique<core::RecordFile>(calendar.Path(), "read"));
  month.ShowSession();
  EXPECT_EQ(LinesOf(14).at(1), "09:00a Gone");
}

TEST_F(DayGridWindow, ReadsEachRecordOnceAndNothingToPaint) {
  Show();
  Settle();
  const FaultyCalls calls;
  const auto readsOf = [&](const std::function<void()>& action) {
    const int before = calls.Count(FaultyCalls::kRead);
    action();
    return calls.Count(FaultyCalls::kRead) - before;
  };
  EXPECT_EQ(readsOf([&] { month.RedrawNow(); }), 0);
  EXPECT_EQ(readsOf([&] { Press(VK_RIGHT); }), 0) << "within the month";
  const int next = readsOf([&] { Press(VK_NEXT); });
  EXPECT_EQ(LinesOf(1), Texts{"06:05p Daily"});
  EXPECT_EQ(readsOf([&] { Press(VK_PRIOR); }), next + 4) << "one for each record more";
}

TEST_F(DayGridWindow, FollowsTheFileWhileItShowsAndNobodyEdits) {
  Show();
  core::FileWatch& watch = core::FileWatch::OfProcess();
  ASSERT_EQ(calendar.file.DeleteRecord(gone), core::Result::kDone);
  core::SetRefreshEnabled(false);
  watch.Look();
  EXPECT_EQ(LinesOf(14).size(), 5U);
  core::SetRefreshEnabled(true);
  watch.Look();
  EXPECT_EQ(LinesOf(14), (Texts{"Whole", "Secret", "11:00a Later", "06:05p Daily"}));
  driver.ProcessEvents();
  EXPECT_EQ(host.Values(MonthView::kId, kGridListed).size(), 1U);
  Settle();  // a record that cannot be read any more uses no line
  FaultyCalls calls;
  month.Relist();
  const int reads = calls.Count(FaultyCalls::kRead);
  calls.Fail(FaultyCalls::kRead, 2 * reads, EIO);
  month.Relist();
  EXPECT_EQ(LinesOf(14).size(), 3U);
  calls.Fail(FaultyCalls::kRead, calls.Count(FaultyCalls::kRead) + 1, EIO, FaultyCalls::kForEver);
  month.Relist();
  EXPECT_FALSE(month.IsWhole());
}

TEST_F(DayGridWindow, KeysButtonsAndTheWheelMoveTheViewDate) {
  Show();
  const Era era(core::kEarlyLastYear);
  const auto expectAfter = [&](unsigned key, const core::Date& date) {
    Press(key);
    EXPECT_TRUE(core::IsSameDate(month.ViewDate(), date))
        << key << ": " << core::FormatDate(month.ViewDate());
  };
  const std::pair<unsigned, core::Date> kSteps[] = {
      {VK_RIGHT, {15, 3, 2004}}, {VK_DOWN, {22, 3, 2004}}, {VK_UP, {15, 3, 2004}}, {VK_LEFT, kToday},
      {VK_NEXT, {14, 4, 2004}},  {VK_PRIOR, kToday},       {VK_UP, {7, 3, 2004}},  {VK_HOME, kToday}};
  for (const auto& [key, date] : kSteps) expectAfter(key, date);
  driver.Click(WindowFromPoint(ClientToScreen(month.Handle(), {688, 595})), {4, 4});
  driver.Wheel(month.Handle(), {50, 50}, 2);
  EXPECT_EQ(month.ViewDate().month, 2) << "one on, two back";
  session.SetDate(core::LastDate());
  month.ShowSession();
  for (const unsigned key : {VK_NEXT, VK_RIGHT, VK_DOWN}) expectAfter(key, core::LastDate());
  EXPECT_TRUE(host.Values(MonthView::kId).empty()) << "the view's own affair";
  for (const unsigned key : {VK_LEFT, VK_RETURN}) expectAfter(key, {30, 12, 2020});
  driver.ProcessEvents();
  EXPECT_EQ(host.Values(MonthView::kId), std::vector<LPARAM>{WordFromDate({30, 12, 2020})});
}

TEST_F(DayGridWindow, IsHeardWholeAndTipsTellWhatDoesNotFit) {
  Show();
  month.Move(0, 0, 701, 6 * 31, 1);
  EXPECT_EQ(LinesOf(14).size(), 2U);
  ScreenReader reader;
  const std::string lines = "Whole\nSecret\n09:00a Gone\n11:00a Later\n06:05p Daily";
  EXPECT_EQ(reader.Read(month.Handle()), "Table \"March 2004\" focused 34");
  EXPECT_EQ(reader.Read(month.Handle(), 3 + 13),
            "Cell \"Sunday, March 14, 2004\" (Today\n" + lines + ") selected focused");
  reader.Act(month.Handle(), 3 + 14, "Press");
  driver.ProcessEvents();
  EXPECT_EQ(host.Values(MonthView::kId), std::vector<LPARAM>{WordFromDate({15, 3, 2004})});
  // The driver leaves the desktop's cursor where it is: so the window goes to it, with the 14th and the 15th.
  for (const auto& [point, tip] : {std::pair{POINT{50, 70}, "Sunday, March 14, 2004\n" + lines},
                                   std::pair{POINT{150, 70}, std::string()}}) {
    const POINT cursor = GetCursorPos();
    MoveWindow(host.Handle(), cursor.x - point.x, cursor.y - point.y, 701, 607);
    SendMessage(month.Handle(), WM_MOUSEMOVE, 0, MakeLParam(point.x, point.y));
    EXPECT_TRUE(driver.WaitUntil([&, wanted = tip] { return driver.ShownTip() == wanted; })) << tip;
  }
}

TEST(PanelLayout, ANoticeTakesTheLastPixelsOfTheGrid) {
  const PanelLayout layout = LayOutPanel(400, 300, NoticePlace::kUnderGrid);
  EXPECT_EQ(layout.grid, (RECT{10, 10, 390, 260}));
  EXPECT_EQ(layout.notice, (RECT{10, 260, 390, 276}));
  EXPECT_EQ(layout.viewTabs, (RECT{10, 280, 400, 300}));
}

// The views in the running program.
class ViewSwitchTest : public testing::Test {
 protected:
  ViewSwitchTest() {
    core::SetClockMode(core::ClockMode::k24Hours);
    calendar.Add(Entry("Lunch").On(20, 3, 2004));
  }
  void ClickTab(int tab) {
    const HWND panel = program.Panel().Handle();
    const HWND tabs = WindowFromPoint(ClientToScreen(panel, {20, ClientOf(panel).bottom - 8}));
    program.driver.Click(tabs, {20 + 70 * tab, 12});
    program.driver.ProcessEvents();
  }
  DayGrid& Grid() { return *program.Panel().Views().Grid(); }
  // Whether the Day view shows, all of it, with these appointments.
  void ExpectDay(const Texts& subjects) {
    program.driver.ProcessEvents();
    EXPECT_TRUE(program.Panel().Views().ShowingDay());
    EXPECT_EQ(program.Subjects(), subjects);
    EXPECT_TRUE(IsWindowVisible(program.Panel().Categories().Handle()));
    EXPECT_EQ(GetFocus(), program.List());
  }

  CalendarProgram program;
  TemporaryCalendar calendar;
};

TEST_F(ViewSwitchTest, ADayThatIsChosenInAMonthOrAWeekShowsAsADay) {
  program.Run(calendar.Path(), [&] {
    for (const int tab : {1, 2}) {
      ClickTab(tab);
      const HWND grid = Grid().Handle();
      EXPECT_EQ(GetClassName(grid), tab == 2 ? "TMonthWndClass" : "TWeekWndClass");
      EXPECT_TRUE(GetFocus() == grid && IsWindowVisible(grid));
      EXPECT_FALSE(IsWindowVisible(program.Panel().List().Handle()));
      program.driver.Press(grid, VK_DELETE);  // of a list that does not show: nothing is asked
      program.driver.Press(grid, VK_NEXT);
      EXPECT_TRUE(core::IsSameDate(program.Session().CurrentDate(), kToday)) << "the view's own step";
      program.driver.Press(grid, VK_RETURN);  // no command to edit
      ExpectDay({});
      EXPECT_FALSE(IsWindowVisible(grid));
      program.GoTo(kToday);
    }
    ClickTab(2);
    EXPECT_TRUE(core::IsSameDate(Grid().ViewDate(), kToday)) << "begins as the session's";
    const RECT day =
        GridCell(GridShape::kMonth, Grid().ClientArea(), DaysAround(GridShape::kMonth, kToday), 19);
    program.driver.Click(Grid().Handle(), {day.left + 5, day.top + 5});
    ExpectDay({"Lunch"});
  });
}

TEST_F(ViewSwitchTest, AGridStaysForANewAppointmentAndGoesForACategory) {
  program.Run(calendar.Path(), [&] {
    ClickTab(1);
    program.driver.WhenDialogOpens([&](HWND dialog) {
      program.driver.TypeInto(dialog, AppointmentEditor::kSubjectEdit, "Added");
      program.driver.ClickControl(dialog, IDOK);
    });
    program.driver.Press(Grid().Handle(), VK_INSERT);
    program.driver.ProcessEvents();
    ASSERT_FALSE(program.Panel().Views().ShowingDay());
    RecordingDc hdc;
    Grid().Paint(&hdc, Grid().ClientArea());
    EXPECT_TRUE(hdc.FindText("14 Sunday") != nullptr && hdc.FindText("10:40 Added") != nullptr);
    program.Session().SetFilter("Calls");
    ExpectDay({});
    ClickTab(2);  // and the program ends so
  });
}

}  // namespace
}  // namespace tests
