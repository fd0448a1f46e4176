// paint_benchmark: what one full repaint costs, of a day list with 40 rows and of the whole main window, each
// beside the limit of 60 repaints a second; and what a step to another month or week of a calendar with
// 10,000 records costs from the click to the painted window, beside one and a half times what it takes to
// list its days and to draw its texts, and beside 30 steps a second. Draws into memory, so that it needs no
// display and measures the program's own work; QT_SCALE_FACTOR=2 in the environment makes it a dense screen.
// Exits with 1 when a limit is exceeded.
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "calendar/calendar_pane.h"
#include "calendar/views/day_list.h"
#include "calendar/views/month_week_views.h"
#include "core/calendar/categories.h"
#include "framework/animations.h"
#include "platform/desktop/application.h"
#include "resources/resources.h"
#include "shell/application.h"
#include "shell/frame_metrics.h"

namespace {

constexpr int kRows = 40;
constexpr int kListWidth = 290;
constexpr int kRounds = 300;
constexpr double kLimit = 1e6 / 60;  // microseconds
constexpr int kStartMs = 300;        // what the program does at its start is over by then
constexpr core::Date kDay{14, 3, 2004};

bool exceeded = false;

[[noreturn]] void Fail(const char* what) {
  std::fprintf(stderr, "%s failed\n", what);
  std::exit(2);
}

// The scratch folder, with the settings, the calendar and the skins.
std::string MakeFolder() {
  std::string folder = (std::filesystem::temp_directory_path() / "daybrix-paint-XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) Fail("mkdtemp");
  std::filesystem::copy(STYLES_FOLDER, folder + "/Styles", std::filesystem::copy_options::recursive);
  return folder;
}

// A busy day: forty appointments, some with marks, some for the whole day.
void MakeCalendar(core::RecordFile& file) {
  core::HeaderBlock header;
  core::InitHeaderBlock(header, "Calendar", "Organizer", 1);
  if (!file.Create(header, core::DefaultCategories(), sizeof(core::Appointment))) Fail("create");
  for (int i = 0; i < kRows; ++i) {
    core::Appointment record{};
    core::InitRecordHeader(record.header, sizeof record, header);
    record.date = kDay;
    core::TimeOfDay start{};
    core::TimeFromSlot(96 + 3 * i, start);
    record.startTime = start;
    record.endTime = start;
    record.allDay = i % 8 == 0 ? 1 : 0;
    record.alarmOn = i % 3 == 0 ? 1 : 0;
    record.header.confidential = i % 5 == 0 ? 1 : 0;
    core::WriteText(record.subject, "Appointment with a subject of its own, number " + std::to_string(i));
    core::WriteText(record.header.category, "Calls");
    if (file.AddRecord(&record) != core::Result::kDone) Fail("add");
  }
}

// The median of what an action takes, in microseconds.
template <typename Action>
double Median(Action paint) {
  std::vector<double> times;
  paint();
  for (int i = 0; i < kRounds; ++i) {
    const auto begin = std::chrono::steady_clock::now();
    paint();
    times.push_back(
        std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count());
  }
  std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
  return times[kRounds / 2];
}

template <typename Paint>
void Measure(const char* name, Paint paint) {
  const double median = Median(paint);
  std::printf("%-34s %10.1f us %10.0f a second   limit %.0f a second  %s\n", name, median, 1e6 / median,
              1e6 / kLimit, median <= kLimit ? "ok" : "OVER");
  exceeded = exceeded || median > kLimit;
}

// A list as tall as its forty rows.
class ListHost : public ZarfWnd {
 public:
  int PreCreate(char*, DWORD* style, int placement[4]) override {
    *style = WS_POPUP | WS_VISIBLE;
    placement[2] = kListWidth;
    placement[3] = kRows * DayRowHeight();
    return 0;
  }
};

class CountingList : public DayList {
 public:
  CountingList() : DayList(1) {}
  void DrawRecordCell(core::RecordFile& calendar, core::RecordList& shown, HDC hdc, COLORREF colour,
                      int index, int state, const RECT& rect) override {
    ++drawn;
    DayList::DrawRecordCell(calendar, shown, hdc, colour, index, state, rect);
  }
  int drawn = 0;
};

void MeasureList(core::RecordFile& file) {
  ListHost host;
  CountingList list;
  core::RecordQuery query;
  query.AddMatchAll();
  if (!query.Run(file) || !host.Create(nullptr) || !list.Create(&host)) Fail("list");
  list.SetFile(&file, &query);
  list.SetItemCount(kRows);
  list.Move(0, 0, kListWidth, kRows * DayRowHeight(), 1);
  list.SelectItem(3);
  WaitMs(kStartMs);  // until the window is there to be painted
  const HWND rows = WindowFromPoint(ClientToScreen(list.Handle(), {10, 10}));
  if (rows == nullptr || list.ItemCount() != kRows) Fail("rows");
  list.drawn = 0;
  Measure("day list of 40 rows", [rows] { RepaintWindow(rows); });
  if (list.drawn != kRows * (kRounds + 1)) Fail("painting all rows");
}

// ---- Steps of the month and the week ----

constexpr int kRecords = 10000;
constexpr int kDaysWithRecords = 366;  // of 2004
constexpr SIZE kGridSize = {1000, 700};
constexpr double kMostTimes = 1.5;
constexpr double kStepLimit = 1e6 / 30;

void MakeLargeCalendar(core::RecordFile& file) {
  core::HeaderBlock header;
  core::InitHeaderBlock(header, "Calendar", "Organizer", 1);
  std::string slots;
  for (int i = 0; i < kRecords; ++i) {
    core::Appointment record{};
    core::InitRecordHeader(record.header, sizeof record, header);
    core::Date date = core::kFirstDate;
    core::DateFromIndex(core::DayIndex(2004, 1, 1) + i * 7 % kDaysWithRecords, date);
    record.date = date;
    core::TimeOfDay start{};
    core::TimeFromSlot(i % core::kDaySlots, start);
    record.startTime = record.endTime = start;
    record.allDay = i % 10 == 0 ? 1 : 0;
    if (i % 100 == 0) record.repeat = {core::kRepeatWeekly, core::kNoEndDate, 1, 1U << (i / 100 % 7)};
    core::WriteText(record.subject, "Appointment with a subject of its own, number " + std::to_string(i));
    slots.append(reinterpret_cast<const char*>(&record), sizeof record);
  }
  if (!file.Create(header, core::DefaultCategories(), sizeof(core::Appointment), slots)) Fail("create");
}

// The texts of a paint, to be drawn again.
class TextsOfPaint : public DeviceContext {
 public:
  void SelectRegion(const RECT*) override {}
  void FillRect(const RECT&, COLORREF) override {}
  void DrawLine(int, int, int, int) override {}
  void Polygon(std::span<const POINT>, COLORREF) override {}
  void Ellipse(const RECT&, COLORREF) override {}
  void DrawBitmap(const Bitmap&, int, int) override {}
  void StretchBitmap(const Bitmap&, const RECT&) override {}
  void DrawText(const char* text, const RECT& rect, UINT format) override {
    texts.push_back({text, rect, format, Font(), TextColor()});
  }
  void DrawOn(HDC hdc) const {
    for (const Text& text : texts) {
      hdc->SelectFont(text.font);
      hdc->SetTextColor(text.colour);
      hdc->DrawText(text.text.c_str(), text.rect, text.format);
    }
  }
  std::size_t Count() const { return texts.size(); }

 private:
  struct Text {
    std::string text;
    RECT rect;
    UINT format;
    HFONT font;
    COLORREF colour;
  };
  std::vector<Text> texts;
};

class GridHost : public ZarfWnd {
 public:
  int PreCreate(char*, DWORD* style, int placement[4]) override {
    *style = WS_POPUP | WS_VISIBLE;
    placement[2] = kGridSize.cx;
    placement[3] = kGridSize.cy;
    return 0;
  }
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override {
    hdc->FillRect(paint.paint, RGB(255, 255, 255));
    if (texts != nullptr) texts->DrawOn(hdc);
  }
  const TextsOfPaint* texts = nullptr;
};

template <typename View>
void MeasureSteps(const char* name, GridShape shape, core::CalendarSession& session) {
  GridHost host;
  GridHost textHost;
  View view(session);
  if (!host.Create(nullptr) || !textHost.Create(nullptr) || !view.Create(&host)) Fail("grid");
  view.Move(0, 0, kGridSize.cx, kGridSize.cy, 1);
  session.SetDate({16, 6, 2004});
  view.ShowSession();
  view.Show();
  WaitMs(kStartMs);
  // There and back again, so that both sides do the same work.
  std::array<TextsOfPaint, 2> texts;
  std::array<GridDays, 2> days;
  for (std::size_t side = 0; side < 2; ++side) {
    if (side == 1) view.Send(WM_COMMAND, 101, 0);
    days[side] = DaysAround(shape, view.ViewDate());
    view.Paint(&texts[side], view.ClientArea());
    if (texts[side].Count() < 200) Fail("a full grid");
  }
  unsigned click = 0;
  const double step = Median([&] { view.Send(WM_COMMAND, ++click % 2 == 0 ? 101 : 102, 0); });
  std::size_t side = 0;
  core::DayLists lists;
  const double bare = Median([&] {
    side = 1 - side;
    if (!lists.Run(*session.File(), days[side].first, days[side].count)) Fail("lists");
    textHost.texts = &texts[side];
    RepaintWindow(textHost.Handle());
  });
  const bool ok = step <= kMostTimes * bare && step <= kStepLimit;
  std::printf("%-34s %10.1f us %10.0f a second   limit %.0f us, %.1f times %.1f (now %.2f)  %s\n", name, step,
              1e6 / step, kStepLimit, kMostTimes, bare, step / bare, ok ? "ok" : "OVER");
  exceeded = exceeded || !ok;
}

// The program, which measures its own window once it is up, and ends.
class MeasuringProgram : public CalendarPane {
 public:
  LRESULT OnAfterCreate(const MessageRecord& record) override {
    const LRESULT result = CalendarPane::OnAfterCreate(record);
    SetTimer(hwnd, kMeasureTimer, kStartMs);
    return result;
  }
  LRESULT OnTimer(const MessageRecord& record) override {
    if (record.wParam != kMeasureTimer) return CalendarPane::OnTimer(record);
    KillTimer(hwnd, kMeasureTimer);
    // A new size marks every window in it, so that the repaint is a whole one; this is also what sizing does.
    Measure("main window, sized and repainted", [this, grown = false]() mutable {
      grown = !grown;
      MoveWindow(hwnd, 0, 0, kLargeFrame.cx - (grown ? 0 : 1), kLargeFrame.cy - (grown ? 0 : 1));
      RepaintWindow(hwnd);
    });
    Post(WM_CLOSE, 0, 0);
    return 0;
  }

 private:
  static constexpr UINT kMeasureTimer = 9999;
};

}  // namespace

int main(int argc, char** argv) {
  const std::string folder = MakeFolder();
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QT_LOGGING_RULES", "default.warning=false", 0);  // offscreen warns at each mask of the frame
  setenv("DAYBRIX_CLOCK", "2004-03-14T10:43:12", 1);
  setenv("DAYBRIX_FOLDER", folder.c_str(), 1);
  setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
  if (!StartDesktop(argc, argv)) return 2;
  RegisterResources();
  const std::string path = folder + "/busy.cld";
  {
    core::RecordFile file(path, "");
    MakeCalendar(file);
    MeasureList(file);
  }
  {
    const std::string large = folder + "/large.cld";
    {
      core::RecordFile file(large, "");
      MakeLargeCalendar(file);
    }
    core::CalendarSession session;
    session.Take(std::make_unique<core::RecordFile>(large, ""));
    MeasureSteps<MonthView>("next month of 10,000 records", GridShape::kMonth, session);
    MeasureSteps<WeekView>("next week of 10,000 records", GridShape::kWeek, session);
  }
  {
    MeasuringProgram program;
    if (RunApplication(program, path) != 0) Fail("program");
  }
  StopDesktop();
  std::filesystem::remove_all(folder);
  return exceeded ? 1 : 0;
}
