#include "calendar/calendar_pane.h"

#include <utility>

#include "calendar/calendar_opening.h"
#include "calendar/file_commands.h"
#include "core/ini_file.h"
#include "framework/compaction_progress.h"
#include "framework/file_type.h"
#include "framework/notices.h"
#include "framework/shell_services.h"
#include "shell/application.h"
#include "shell/commands.h"

namespace {

constexpr int kCalendarModule = 1;
constexpr const char* kSection = "Preference";
constexpr const char* kPaneKey = "PaneId";
constexpr int kWorkPane = 1;

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kOrange = RGB(231, 113, 1);

// Both panes have one scheme but for their ground.
constexpr PaneColours Scheme(COLORREF background) {
  return {background,       RGB(119, 144, 0), kWhite, kOrange,          RGB(128, 121, 149),
          RGB(139, 164, 0), kOrange,          0,      RGB(252, 183, 2), kOrange};
}
constexpr PaneColours kIntroColours = Scheme(RGB(188, 222, 1));
constexpr PaneColours kWorkColours = Scheme(RGB(255, 255, 195));
constexpr ZarfIntroPane::Look kIntroLook = {ZarfIntroPane::Layout::kTallPicture, false, 4000, kWhite, kWhite};

}  // namespace

CalendarPane::CalendarPane()
    : ZarfWndApp("Tempoline", "Daybrix", kCalendarModule),
      intro("Intro", kIntroColours, kIntroLook),
      work("Work", kWorkColours) {}

CalendarPane::~CalendarPane() {
  // A copy that never had a window has shown no pane.
  if (hwnd != nullptr) core::IniFile().WriteInt(kSection, kPaneKey, CurrentPaneIndex());
  if (IsWindow(hwnd)) DestroyWindow(hwnd);
  TakeFile(nullptr);
}

LRESULT CalendarPane::OnCreate(const MessageRecord& record) {
  if (ZarfWndApp::OnCreate(record) == -1) return -1;
  return intro.Create(this) && work.Create(this) ? 0 : -1;
}

LRESULT CalendarPane::OnAfterCreate(const MessageRecord&) {
  RegisterFileType("cld");
  std::int32_t pane = kWorkPane;
  core::IniFile().ReadInt(kSection, kPaneKey, pane);
  SwitchPane(pane, false);
  if (work.Panel().BeginCommand()) {
    OpenAtStart();
    work.Panel().EndCommand();
  }
  FocusPane();
  return 0;
}

void CalendarPane::OpenAtStart() {
  // Said before another calendar takes its place.
  const std::string missing = DescribeMissingFile(CommandLineFile());
  if (!missing.empty()) ShowInfo(this, missing);
  StartupCalendar start = OpenStartupCalendar(CommandLineFile(), AskOver(*this), ShowCompaction(this));
  if (start.opened.file != nullptr) TakeFile(std::move(start.opened.file));
  if (!start.opened.message.empty()) ShowInfo(this, start.opened.message);
  while (calendarFile == nullptr) {
    if (CreateAndOpen(*this, start.note)) continue;
    Post(WM_CLOSE, 0, 0);
    break;
  }
}

void CalendarPane::FocusPane() {
  if (ZarfPane* pane = CurrentPane()) {
    if (pane == &work) {
      work.Panel().FocusList();
    } else {
      SetFocus(pane->Handle());
    }
  }
}

bool CalendarPane::OpenCalendar(const std::string& path, const std::string& password, bool withExamples,
                                std::string& message) {
  core::OpenedCalendar opened = core::OpenCalendarFile(path, password, withExamples, ShowCompaction(this));
  message = std::move(opened.message);
  if (opened.file == nullptr) return false;
  TakeFile(std::move(opened.file));
  return true;
}

void CalendarPane::TakeFile(std::unique_ptr<core::RecordFile> file) {
  work.Panel().Attach(file.get());
  // Nothing refers to the old file any more.
  if (calendarFile != nullptr) calendarFile->Close();
  calendarFile = std::move(file);
}

LRESULT CalendarPane::OnActivate(const MessageRecord& record) {
  if (record.wParam != 0 && (GetFocus() == nullptr || GetFocus() == hwnd)) FocusPane();
  return ZarfWndApp::OnActivate(record);
}

LRESULT CalendarPane::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case ID_ITEM_NEW:
      return work.Panel().Send(WM_COMMAND, record.wParam, record.lParam);
    case ID_ITEM_EDIT:
    case ID_ITEM_DELETE:
      // On the title page there is nothing to edit.
      return CurrentPane() == &work ? work.Panel().Send(WM_COMMAND, record.wParam, record.lParam) : 0;
    case ID_FILE_NEW:
    case ID_FILE_OPEN:
    case ID_PASSWORDS:
    case ID_COMPACT:
    case ID_FILE_SAVE_AS:
      RunFileCommand(LowWord(record.wParam));
      return 0;
    default:
      return ZarfWndApp::OnCommand(record);
  }
}

void CalendarPane::RunFileCommand(unsigned command) {
  if (!work.Panel().BeginCommand()) return;
  switch (command) {
    case ID_FILE_NEW:
      NewFileCommand(*this);
      break;
    case ID_FILE_OPEN:
      OpenFileCommand(*this);
      break;
    case ID_PASSWORDS:
      NetworkPasswordsCommand(*this);
      break;
    case ID_COMPACT:
      CompactCommand(*this);
      break;
    default:
      SaveAsCommand(*this);
      break;
  }
  work.Panel().EndCommand();
  FocusPane();
}

void CalendarPane::ShowHelp(int) {
  OpenHelp("calendar.htm", false);
}

// The editor works on the open file and holds a lock in it: it comes to its end first.
LRESULT CalendarPane::OnClose(const MessageRecord& record) {
  return work.Panel().MayClose() ? ZarfWndApp::OnClose(record) : 0;
}

LRESULT CalendarPane::OnDestroy(const MessageRecord& record) {
  TakeFile(nullptr);
  return ZarfWndApp::OnDestroy(record);
}
