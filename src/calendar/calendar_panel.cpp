#include "calendar/calendar_panel.h"

#include "calendar/day_query.h"
#include "calendar/palette.h"
#include "calendar/panel_layout.h"
#include "framework/drawing.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "platform/desktop/application.h"
#include "platform/desktop/menu.h"
#include "shell/application.h"
#include "shell/commands.h"
#include "shell/main_frame.h"

using core::CommandResult;

namespace {

constexpr unsigned kDayListId = 100;
constexpr unsigned kMiniCalendarId = 102;

constexpr int kNoPermissionText = 102;
constexpr int kDeleteQuestion = 105;
constexpr int kLockedText = 106;
constexpr int kRepeatDragText = 501;
constexpr int kNewItemText = 120;
constexpr int kEditItemText = 121;
constexpr int kDeleteItemText = 122;
constexpr int kMenuTextSize = 255;

bool IsDone(CommandResult result) {
  return result == CommandResult::kDone || result == CommandResult::kNotFlushed;
}

// What the list tells its parent when it is rebuilt by its timer.
constexpr LPARAM kBeforeTimedRebuild = 3;
constexpr LPARAM kAfterTimedRebuild = 2;

void AppendItem(HMENU menu, int textId, unsigned command, bool enabled) {
  char text[kMenuTextSize];
  AppendMenu(menu, enabled ? MF_STRING : MF_STRING | MF_GRAYED, command, LoadText(text, textId, sizeof text));
}

}  // namespace

CalendarPanel::CalendarPanel()
    : currentDate(core::kFirstDate),
      keptSelection(),
      dayList(kDayListId),
      miniCalendar(kMiniCalendarId,
                   {.background = kPanelBackground, .selection = kSelection, .today = kTodayColour}) {}

int CalendarPanel::PrepareClass(WNDCLASS* windowClass) {
  windowClass->className = "ZarfPane";
  windowClass->background = kNoColour;
  return 0;
}

LRESULT CalendarPanel::OnCreate(const MessageRecord&) {
  // In the order in which Tab walks them.
  if (!categorySelector.Create(this) || !dayList.Create(this) || !miniCalendar.Create(this)) return -1;
  SetWindowText(hwnd, "Calendar");
  SetWindowText(categorySelector.Handle(), "Category");
  return 0;
}

LRESULT CalendarPanel::OnSize(const MessageRecord& record) {
  const POINT size = PointFromLParam(record.lParam);
  const PanelLayout layout = LayOutPanel(size.x, size.y);
  const auto place = [](ZarfWnd& child, const RECT& rect) {
    child.Move(rect.left, rect.top, Width(rect), Height(rect), 1);
  };
  place(categorySelector, layout.categorySelector);
  place(dayList, layout.dayList);
  place(miniCalendar, layout.miniCalendar);
  return 0;
}

void CalendarPanel::OnPaint(HDC hdc, PAINTSTRUCT paint) {
  hdc->FillRect(paint.paint, kPanelBackground);
}

// ---- The file and what is shown of it ----

void CalendarPanel::Attach(core::RecordFile* file) {
  calendarFile = file;
  if (file == nullptr) {
    records.Clear();
    dayList.SetFile(nullptr, nullptr);
    categorySelector.SetFile(nullptr);
    return;
  }
  if (!wasAttached) currentDate = core::Today();
  wasAttached = true;
  Reload();
}

void CalendarPanel::Reload() {
  if (calendarFile == nullptr) return;
  categorySelector.SetFile(calendarFile);
  miniCalendar.SetDate(currentDate.year, currentDate.month, currentDate.day);
  LoadDay();
}

void CalendarPanel::LoadDay() {
  BeginWaitCursor();
  ListDay(records, *calendarFile, currentDate, CategoryFilter());
  SetWindowText(dayList.Handle(), ("Appointments of " + core::FormatDate(currentDate)).c_str());
  dayList.SetFile(calendarFile, &records);
  EndWaitCursor();
}

void CalendarPanel::SetCurrentDate(const core::Date& date) {
  currentDate = date;
  Reload();
}

// ---- What the children and the menus tell ----

LRESULT CalendarPanel::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  const unsigned code = HighWord(record.wParam);
  switch (id) {
    case ID_ITEM_NEW:
    case ID_ITEM_EDIT:
    case ID_ITEM_DELETE:
      RunCommand(id);
      break;
    case kDayListId:
      OnListNotice(code, record.lParam);
      break;
    case kMiniCalendarId:
      OnCalendarNotice(code, *reinterpret_cast<const core::Date*>(record.lParam));
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
      ShowPopupMenu(value >= 0);
      break;
    case kListFileChanged:
      OnListChanged(value);
      break;
    default:
      break;
  }
}

// Another user's change must not take the selection away under the hands of this one, nor the rows scrolled
// to.
void CalendarPanel::OnListChanged(LPARAM phase) {
  if (calendarFile == nullptr) return;
  if (phase == kBeforeTimedRebuild) {
    hasKeptSelection = calendarFile->ReadBytes(&keptSelection, sizeof keptSelection, SelectedOffset());
  } else if (phase == kAfterTimedRebuild && hasKeptSelection && dayList.SelectedItem() < 0) {
    const int firstRow = dayList.FirstRow();
    dayList.SelectRecord(&keptSelection);
    dayList.SetFirstRow(firstRow);
    hasKeptSelection = false;
  }
}

void CalendarPanel::OnCalendarNotice(unsigned code, const core::Date& date) {
  // The date lies in a place that all mini calendars share.
  const core::Date picked = date;
  if (calendarFile == nullptr) return;
  if (code == kDropMove || code == kDropCopy) {
    if (!BeginCommand()) return;
    DropAppointment(code == kDropCopy, picked);
    EndCommand();
  } else {
    SetCurrentDate(picked);
  }
}

void CalendarPanel::OnCategoryCommand(int command, const char* name) {
  if (!BeginCommand()) return;
  if (categorySelector.OnCategoryMenuCommand(command, name)) Reload();
  EndCommand();
}

// At the mouse, but by the selected row when a key asked for the menu while the mouse was elsewhere.
POINT CalendarPanel::MenuPoint() const {
  const POINT mouse = GetCursorPos();
  RECT list;
  GetWindowRect(dayList.Handle(), &list);
  return Contains(list, mouse) ? mouse : dayList.MenuPoint(dayList.SelectedItem());
}

void CalendarPanel::ShowPopupMenu(bool onItem) {
  const HMENU menu = CreatePopupMenu();
  AppendItem(menu, kNewItemText, ID_ITEM_NEW, true);
  AppendItem(menu, kEditItemText, ID_ITEM_EDIT, onItem);
  AppendItem(menu, kDeleteItemText, ID_ITEM_DELETE, onItem);
  TrackPopupMenu(menu, MenuPoint(), hwnd);
  DestroyMenu(menu);
}

// ---- The commands ----

// One at a time: a second one may wait in the message queue while the first shows a dialog.
bool CalendarPanel::BeginCommand() {
  if (commandRunning) return false;
  commandRunning = true;
  return true;
}

void CalendarPanel::EndCommand() {
  commandRunning = false;
  if (closeWanted) TheApp().Post(WM_CLOSE, 0, 0);
  FocusList();
}

void CalendarPanel::RunCommand(unsigned command) {
  if (!BeginCommand()) return;
  switch (command) {
    case ID_ITEM_NEW:
      NewAppointment();
      break;
    case ID_ITEM_EDIT:
      EditAppointment();
      break;
    default:
      DeleteAppointment();
      break;
  }
  EndCommand();
}

bool CalendarPanel::MayClose() {
  closeWanted = commandRunning;
  return !commandRunning;
}

void CalendarPanel::NewAppointment() {
  if (calendarFile == nullptr) {
    MessageBeep();
    return;
  }
  CommandResult result = CheckMayChange(*calendarFile);
  core::Appointment record;
  // A file that cannot be read takes no appointment: better told now than after the typing.
  if (result == CommandResult::kDone && !core::NewAppointment(*calendarFile, record)) {
    result = CommandResult::kFailed;
  }
  AppointmentEditor::Mode mode = AppointmentEditor::Mode::kNew;
  while (result == CommandResult::kDone) {
    AppointmentEditor editor(*calendarFile, record, currentDate, mode);
    if (editor.Run(this) != 1) return;
    result = AddAppointment(*calendarFile, record);
    if (IsDone(result)) {
      PlaySound("add.wav");
      RefreshList();
      dayList.SelectRecord(&record);
      break;
    }
    // What the user typed comes back, to be saved when there is room again.
    if (result != CommandResult::kFailed || closeWanted) break;
    Report(result);
    result = CommandResult::kDone;
    mode = AppointmentEditor::Mode::kEdit;
  }
  Report(result);
}

void CalendarPanel::EditAppointment() {
  const std::int32_t offset = SelectedOffset();
  if (calendarFile == nullptr) return;
  CommandResult result = CheckMayChange(*calendarFile);
  if (result == CommandResult::kDone && offset < 0) return;
  core::EditLock lock(*calendarFile);
  core::Appointment record;
  if (result == CommandResult::kDone) result = BeginEdit(lock, offset, record);
  if (result == CommandResult::kDone) {
    if (StoreEdited(lock, record)) PlaySound("add.wav");
    lock.Release();
  } else {
    Report(result);
  }
  RefreshList();
  if (result == CommandResult::kDone) dayList.SelectRecord(&record);
}

// Runs the editor until its record is written (true) or the user cancels.
bool CalendarPanel::StoreEdited(core::EditLock& lock, core::Appointment& record) {
  for (;;) {
    AppointmentEditor editor(*calendarFile, record, currentDate, AppointmentEditor::Mode::kEdit);
    if (editor.Run(this) != 1) return false;
    const CommandResult result = EndEdit(lock, record);
    Report(result);
    if (IsDone(result)) return true;
    if (result != CommandResult::kFailed || closeWanted) return false;
  }
}

void CalendarPanel::DeleteAppointment() {
  const std::int32_t offset = SelectedOffset();
  if (calendarFile == nullptr) return;
  CommandResult result = CheckMayChange(*calendarFile);
  if (result == CommandResult::kDone && offset < 0) return;
  core::EditLock lock(*calendarFile);
  if (result == CommandResult::kDone) result = lock.Take(offset);
  if (result == CommandResult::kDone) {
    if (!AskYesNo(this, kDeleteQuestion)) return;
    result = DeleteLocked(lock);
    if (IsDone(result)) PlaySound("bindel.wav");
  }
  Report(result);
  RefreshList();
}

void CalendarPanel::DropAppointment(bool copy, const core::Date& date) {
  const std::int32_t offset = SelectedOffset();
  if (offset < 0) {
    MessageBeep();
    return;
  }
  core::Appointment record;
  const CommandResult result = copy ? CopyToDate(*calendarFile, offset, date, record)
                                    : MoveToDate(*calendarFile, offset, date, record);
  if (IsDone(result)) {
    PlaySound(copy ? "add.wav" : "move.wav");
    SetCurrentDate(date);
    dayList.SelectRecord(&record);
  } else {
    RefreshList();
  }
  Report(result);
}

void CalendarPanel::Report(CommandResult result) {
  switch (result) {
    case CommandResult::kReader:
      ShowInfoId(this, kNoPermissionText);
      break;
    case CommandResult::kLocked:
      ShowInfoId(this, kLockedText);
      break;
    case CommandResult::kRepeats:
      ShowInfoId(this, kRepeatDragText);
      break;
    case CommandResult::kVanished:
      ShowInfo(this, "Record is deleted by another user.");
      break;
    case CommandResult::kCancelledEvent:
      MessageBeep();
      break;
    case CommandResult::kFailed:
      ShowInfo(this, "Can't write to \"" + calendarFile->Path() + "\".\r\nThe appointment was not saved.");
      break;
    case CommandResult::kNotFlushed:
      ShowInfo(this, "Can't bring \"" + calendarFile->Path() +
                         "\" to the disk.\r\nThe change is made, but may be lost if the computer fails.");
      break;
    case CommandResult::kDone:
    case CommandResult::kConfidential:
      break;
  }
}
