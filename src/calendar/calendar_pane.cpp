#include "calendar/calendar_pane.h"

#include <optional>
#include <utility>

#include "addressbook/address_book_window.h"
#include "calendar/file_commands.h"
#include "core/calendar/calendar_opening.h"
#include "core/ini_file.h"
#include "exchange/exchange_commands.h"
#include "framework/compaction_progress.h"
#include "framework/menu_entry.h"
#include "framework/notices.h"
#include "framework/password_dialog.h"
#include "framework/shell_services.h"
#include "net/server_setup.h"
#include "platform/desktop/application.h"
#include "shell/application.h"
#include "shell/commands.h"
#include "shell/frame_placement.h"

namespace {

constexpr const char* kProgram = "Tempoline";
constexpr int kWorkPane = 1;

constexpr UINT kAlarmTimer = 106;
constexpr int kAlarmMs = 120000;

// A command of the pane to itself.
constexpr unsigned kLookAfterFile = 2100;

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
    : ZarfWndApp(kProgram, "Daybrix"),
      gate([this](CommandKind kind, bool closeWanted) {
        if (closeWanted) Post(WM_CLOSE, 0, 0);
        if (kind == CommandKind::kOfUser) FocusPane();
      }),
      intro("Intro", kProgram, kIntroColours, kIntroLook),
      work("Work", kWorkColours, session, gate),
      alarms(session, gate, *this) {
  session.SetCompactionWatcher(ShowCompaction(this));
  session.AddListener(*this);
}

CalendarPane::~CalendarPane() {
  if (IsWindow(hwnd)) DestroyWindow(hwnd);
  session.Take(nullptr);
  session.RemoveListener(*this);
}

LRESULT CalendarPane::OnCreate(const MessageRecord& record) {
  if (ZarfWndApp::OnCreate(record) == -1) return -1;
  if (!intro.Create(this) || !work.Create(this)) return -1;
  SetTimer(hwnd, kAlarmTimer, kAlarmMs);
  return 0;
}

LRESULT CalendarPane::OnAfterCreate(const MessageRecord&) {
  RemoveStaleMenuEntry();
  SwitchPane(ReadPane(core::IniFile(), kWorkPane), false);
  const CommandScope start(gate);
  if (start.Entered()) OpenAtStart();
  return 0;
}

void CalendarPane::OpenAtStart() {
  // Said before another calendar takes its place.
  const std::string missing = core::DescribeMissingFile(CommandLineFile());
  if (!missing.empty()) ShowInfo(this, missing);
  core::StartupCalendar start =
      core::OpenStartupCalendar(CommandLineFile(), AskOver(this), ShowCompaction(this));
  if (start.opened.file != nullptr) session.Take(std::move(start.opened.file));
  if (!start.opened.message.empty()) ShowInfo(this, start.opened.message);
  while (session.File() == nullptr) {
    if (CreateAndOpen(session, this, start.note)) continue;
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
    case ID_FIND:
    case ID_UNDO_DELETE:
    case ID_CUT:
    case ID_COPY:
    case ID_PASTE:
    case ID_OPEN_ATTACHMENT:
      // On the title page there is nothing to work on.
      return CurrentPane() == &work ? work.Panel().Send(WM_COMMAND, record.wParam, record.lParam) : 0;
    case ID_INTERNET_EVENTS:
      if (CurrentPane() == &work) return work.Panel().Send(WM_COMMAND, record.wParam, record.lParam);
      MessageBeep();
      return 0;
    case ID_FILE_NEW:
    case ID_FILE_OPEN:
    case ID_SERVER_SETUP:
    case ID_PASSWORDS:
    case ID_COMPACT:
    case ID_FILE_SAVE_AS:
    case ID_IMPORT:
    case ID_EXPORT:
    case ID_PRINT:
      RunFileCommand(LowWord(record.wParam));
      return 0;
    case ID_ADDRESS_BOOK:
      ShowAddressBook();
      return 0;
    case kLookAfterFile:
      LookAfterFile();
      return 0;
    default:
      return ZarfWndApp::OnCommand(record);
  }
}

void CalendarPane::RunFileCommand(unsigned command) {
  const CommandScope scope(gate);
  if (!scope.Entered()) return;
  switch (command) {
    case ID_FILE_NEW:
      NewFileCommand(session, this);
      break;
    case ID_FILE_OPEN:
      OpenFileCommand(session, this);
      break;
    case ID_PASSWORDS:
      NetworkPasswordsCommand(session, this);
      break;
    case ID_SERVER_SETUP:
      ServerSetupCommand(session.File(), this);
      break;
    case ID_COMPACT:
      CompactCommand(this);
      break;
    case ID_IMPORT:
      ImportCommand(session, this);
      break;
    case ID_EXPORT:
      ExportCommand(session, this, exchangeChoices);
      break;
    case ID_PRINT:
      Report();
      break;
    default:
      SaveAsCommand(session, this);
      break;
  }
}

void CalendarPane::ShowAddressBook() {
  const CommandScope scope(gate);
  if (scope.Entered()) AddressBookCommand(this);
}

// Who sees a week or a month means no appointment that was selected in the list.
void CalendarPane::Report() {
  CalendarPanel& panel = work.Panel();
  core::RecordKey selected;
  if (panel.Views().ShowingDay()) selected = panel.List().KeyAt(panel.List().SelectedItem());
  ReportCommand(session, this, exchangeChoices,
                selected.IsNone() ? std::nullopt : std::optional(selected.id));
}

// Posted: what is looked after may be in use by whoever told.
void CalendarPane::OnSessionChange(core::SessionChange change) {
  if (change == core::SessionChange::kTrouble) Post(WM_COMMAND, kLookAfterFile, 0);
}

void CalendarPane::LookAfterFile() {
  const CommandScope scope(gate, CommandKind::kOfProgram);
  if (!scope.Entered()) return;
  const std::string news = session.LookAfterFile();
  if (!news.empty()) ShowInfo(this, news);
}

void CalendarPane::ShowHelp(int) {
  OpenHelp("calendar.htm", false);
}

// The editor works on the open file and holds a lock in it: it comes to its end first.
LRESULT CalendarPane::OnClose(const MessageRecord& record) {
  return gate.MayClose() ? ZarfWndApp::OnClose(record) : 0;
}

LRESULT CalendarPane::OnTimer(const MessageRecord& record) {
  if (record.wParam != kAlarmTimer) return ZarfWndApp::OnTimer(record);
  alarms.Run();
  return 0;
}

LRESULT CalendarPane::OnDestroy(const MessageRecord& record) {
  KillTimer(hwnd, kAlarmTimer);
  session.Take(nullptr);
  return ZarfWndApp::OnDestroy(record);
}
