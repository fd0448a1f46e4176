#include "calendar/calendar_panel.h"

#include "calendar/panel_layout.h"
#include "calendar/views/palette.h"
#include "core/time_texts.h"
#include "framework/date_word.h"
#include "framework/services.h"
#include "shell/commands.h"

namespace {

constexpr unsigned kDayListId = 100;
constexpr unsigned kMiniCalendarId = 102;

constexpr const char* kPartMissing = "Not all appointments could be read.";

}  // namespace

CalendarPanel::CalendarPanel(core::CalendarSession& calendarSession, CommandGate& commandGate)
    : session(calendarSession),
      gate(commandGate),
      dayList(kDayListId),
      categorySelector(session),
      miniCalendar(kMiniCalendarId,
                   {.background = kPanelBackground, .selection = kSelection, .today = kTodayColour}),
      recycleBin(session),
      views(session),
      commands(*this, session, gate, dayList, views) {
  session.AddListener(*this);
}

CalendarPanel::~CalendarPanel() {
  session.RemoveListener(*this);
}

int CalendarPanel::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfPane";
  windowClass->background = kNoColour;
  return 0;
}

LRESULT CalendarPanel::OnCreate(const MessageRecord&) {
  // In the order in which Tab walks them.
  const bool made = categorySelector.Create(this) && dayList.Create(this) && miniCalendar.Create(this) &&
                    recycleBin.Create(this) && notice.Create(this) &&
                    views.Create(this, {&categorySelector, &dayList, &miniCalendar, &recycleBin});
  if (!made) return -1;
  SetWindowText(hwnd, "Calendar");
  SetWindowText(categorySelector.Handle(), "Category");
  return 0;
}

LRESULT CalendarPanel::OnSize(const MessageRecord&) {
  PlaceParts();
  return 0;
}

PanelLayout CalendarPanel::Layout() const {
  const RECT client = ClientArea();
  NoticePlace place = NoticePlace::kNone;
  if (notice.IsShown()) place = views.ShowingDay() ? NoticePlace::kUnderList : NoticePlace::kUnderGrid;
  return LayOutPanel(client.right, client.bottom, place);
}

void CalendarPanel::PlaceParts() {
  const PanelLayout layout = Layout();
  const auto place = [](ZarfWnd& child, const RECT& rect) {
    child.Move(rect.left, rect.top, Width(rect), Height(rect), 1);
  };
  place(categorySelector, layout.categorySelector);
  place(dayList, layout.dayList);
  place(notice, layout.notice);
  place(miniCalendar, layout.miniCalendar);
  place(recycleBin, layout.recycleBin);
  views.Place(layout);
}

void CalendarPanel::OnPaint(HDC hdc, PAINTSTRUCT paint) {
  hdc->FillRect(paint.paint, kPanelBackground);
  views.PaintFrame(hdc, Layout());
}

// ---- What the session tells ----

void CalendarPanel::OnSessionChange(core::SessionChange change) {
  if (change == core::SessionChange::kRecords) {
    dayList.RefreshFromFile(ListRefresh::kByProgram);
    if (DayGrid* grid = views.Grid()) grid->Relist();
    ShowWhetherWhole();
    return;
  }
  if (change == core::SessionChange::kTrouble || change == core::SessionChange::kBin) return;
  categorySelector.Fill();
  if (session.File() == nullptr) {
    records.Clear();
    dayList.SetFile(nullptr, nullptr);
    ShowView(CalendarView::kDay);
    return;
  }
  const core::Date& date = session.CurrentDate();
  miniCalendar.SetDate(date.year, date.month, date.day);
  LoadDay();
  DayGrid* grid = views.Grid();
  if (change != core::SessionChange::kRights) {
    // A day or a category that was chosen is shown as a day.
    ShowView(CalendarView::kDay);
  } else if (grid != nullptr) {
    grid->Relist();
    ShowWhetherWhole();
  }
}

void CalendarPanel::ShowView(CalendarView view) {
  const bool other = views.Show(view);
  if (other && views.ShowingDay()) dayList.FocusList();
  ShowWhetherWhole();
  if (other) PlaceParts();
}

void CalendarPanel::FocusList() {
  if (DayGrid* grid = views.Grid()) {
    SetFocus(grid->Handle());
  } else {
    dayList.FocusList();
  }
}

void CalendarPanel::LoadDay() {
  BeginWaitCursor();
  // A list that was not made is shown as far as it goes, and tried again by the file watch.
  static_cast<void>(records.Run(*session.File(), session.CurrentDate(), 1, session.Filter()));
  dayList.SetFile(session.File(), &records);
  ShowWhetherWhole();
  EndWaitCursor();
}

// A list that lacks something is not taken for a day without appointments.
void CalendarPanel::ShowWhetherWhole() {
  std::string title = "Appointments of " + core::FormatDate(session.CurrentDate());
  if (!records.IsWhole()) title.append(". ").append(kPartMissing);
  SetWindowText(dayList.Handle(), title.c_str());
  const DayGrid* grid = views.Grid();
  const bool whole = grid != nullptr ? grid->IsWhole() : records.IsWhole();
  if (notice.Say(whole ? "" : kPartMissing)) PlaceParts();
}

// ---- What the children and the menus tell ----

LRESULT CalendarPanel::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  const unsigned code = HighWord(record.wParam);
  if (commands.Run(id)) return 0;
  switch (id) {
    case kBinId:
      return commands.RunForBin(static_cast<unsigned>(record.lParam));
    case kDayListId:
      OnListNotice(code, record.lParam);
      break;
    case kMiniCalendarId:
      OnCalendarNotice(code, DateFromWord(record.lParam));
      break;
    case ViewSwitch::kTabsId:
      ShowView(static_cast<CalendarView>(record.lParam));
      break;
    case MonthView::kId:
    case WeekView::kId:
      OnGridNotice(code, DateFromWord(record.lParam));
      break;
    default:
      if (CategorySelector::IsCategoryCommand(id))
        OnCategoryCommand(static_cast<int>(id), reinterpret_cast<const char*>(record.lParam));
      break;
  }
  return 0;
}

void CalendarPanel::OnListNotice(unsigned code, LPARAM value) {
  switch (code) {
    case kListDoubleClick:
      Post(WM_COMMAND, value < 0 ? ID_ITEM_NEW : ID_ITEM_EDIT, value);
      break;
    case kListRightClick:
      commands.ShowMenu(value >= 0);
      break;
    case kListFileChanged:
      OnListChanged(value);
      break;
    default:
      break;
  }
}

void CalendarPanel::OnListChanged(LPARAM rebuild) {
  if (session.File() == nullptr) return;
  ShowWhetherWhole();
  keptSelection.OnListChanged(dayList, rebuild);
}

void CalendarPanel::OnCalendarNotice(unsigned code, core::Date date) {
  if (session.File() == nullptr) return;
  if (code == kDropMove || code == kDropCopy) {
    commands.Drop(code == kDropCopy, date);
  } else {
    session.SetDate(date);
  }
}

void CalendarPanel::OnGridNotice(unsigned code, core::Date date) {
  if (code == kGridListed) {
    ShowWhetherWhole();
  } else if (session.File() != nullptr) {
    session.SetDate(date);
  }
}

void CalendarPanel::OnCategoryCommand(int command, const char* name) {
  const CommandScope scope(gate);
  if (scope.Entered()) categorySelector.OnCategoryMenuCommand(command, name);
}
