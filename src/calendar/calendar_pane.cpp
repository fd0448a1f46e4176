#include "calendar/calendar_pane.h"

#include <utility>

#include "calendar/calendar_opening.h"
#include "framework/notices.h"
#include "shell/application.h"
#include "shell/commands.h"

namespace {

constexpr int kCalendarModule = 1;

}  // namespace

CalendarPane::CalendarPane() : ZarfWndApp("Tempoline", "Daybrix", kCalendarModule) {}

CalendarPane::~CalendarPane() {
  if (IsWindow(hwnd)) DestroyWindow(hwnd);
  TakeFile(nullptr);
}

LRESULT CalendarPane::OnCreate(const MessageRecord& record) {
  if (!panel.Create(this)) return -1;
  return ZarfWndApp::OnCreate(record);
}

LRESULT CalendarPane::OnAfterCreate(const MessageRecord&) {
  core::OpenedCalendar opened = OpenStartupCalendar(CommandLineFile());
  if (opened.file != nullptr) {
    TakeFile(std::move(opened.file));
  } else {
    ShowInfo(this, opened.message);
  }
  panel.FocusList();
  return 0;
}

bool CalendarPane::OpenCalendar(const std::string& path, const std::string& password, bool withExamples,
                                std::string& message) {
  core::OpenedCalendar opened = core::OpenCalendarFile(path, password, withExamples);
  message = opened.message;
  if (opened.file == nullptr) return false;
  TakeFile(std::move(opened.file));
  return true;
}

void CalendarPane::TakeFile(std::unique_ptr<core::RecordFile> file) {
  panel.Attach(file.get());
  // Nothing refers to the old file any more.
  if (calendarFile != nullptr) calendarFile->Close();
  calendarFile = std::move(file);
}

LRESULT CalendarPane::OnSize(const MessageRecord& record) {
  const POINT size = PointFromLParam(record.lParam);
  panel.Move(0, 0, size.x, size.y, 1);
  return 0;
}

LRESULT CalendarPane::OnActivate(const MessageRecord& record) {
  if (record.wParam != 0 && GetFocus() == nullptr) panel.FocusList();
  return ZarfWndApp::OnActivate(record);
}

LRESULT CalendarPane::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case ID_ITEM_NEW:
    case ID_ITEM_EDIT:
    case ID_ITEM_DELETE:
      return panel.Send(WM_COMMAND, record.wParam, record.lParam);
    default:
      return ZarfWndApp::OnCommand(record);
  }
}

// The editor works on the open file and holds a lock in it: it comes to its end first.
LRESULT CalendarPane::OnClose(const MessageRecord& record) {
  return panel.MayClose() ? ZarfWndApp::OnClose(record) : 0;
}

LRESULT CalendarPane::OnDestroy(const MessageRecord& record) {
  TakeFile(nullptr);
  return ZarfWndApp::OnDestroy(record);
}
