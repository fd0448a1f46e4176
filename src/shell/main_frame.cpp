#include "shell/main_frame.h"

#include <algorithm>
#include <iterator>

#include "controls/list_refresh.h"
#include "platform/desktop/application.h"
#include "shell/accelerators.h"
#include "shell/application.h"
#include "shell/application_object.h"
#include "shell/commands.h"

namespace {

// The smallest and the first size of the frame, in pixels.
constexpr int kFrameWidth = 420;
constexpr int kFrameHeight = 430;

struct AcceleratorCommand {
  unsigned accelerator;
  unsigned command;
};

constexpr AcceleratorCommand kAcceleratorCommands[] = {
    {kAccNew, ID_ITEM_NEW},
    {kAccEdit, ID_ITEM_EDIT},
    {kAccDelete, ID_ITEM_DELETE},
};

}  // namespace

ZarfWndApp::ZarfWndApp(const char* newModuleName, const char* newProductName, int newModuleKind)
    : moduleName(newModuleName),
      productName(newProductName),
      windowClass("ZarfWndApp_" + moduleName),
      moduleKind(newModuleKind) {
  SetApplicationObject(this);
}

ZarfWndApp::~ZarfWndApp() {
  SetApplicationObject(nullptr);
}

int ZarfWndApp::PrepareClass(WNDCLASS* windowClassRecord) {
  windowClassRecord->className = windowClass.c_str();
  windowClassRecord->style = CS_VREDRAW | CS_DBLCLKS;
  windowClassRecord->icon = "icon";
  return 0;
}

int ZarfWndApp::PreCreate(char title[kTitleSize], DWORD* style, int placement[4]) {
  title[productName.copy(title, kTitleSize - 1)] = '\0';
  *style = WS_OVERLAPPEDWINDOW;
  placement[2] = kFrameWidth;
  placement[3] = kFrameHeight;
  return 0;
}

LRESULT ZarfWndApp::WindowProc(const MessageRecord& record) {
  return record.message == NotifyMessage() ? OnNotice(record) : ZarfWnd::WindowProc(record);
}

LRESULT ZarfWndApp::OnNotice(const MessageRecord& record) {
  // The sender has the new values already.
  const bool ownNotice = record.lParam != 0 && record.lParam == reinterpret_cast<LPARAM>(hwnd);
  if (record.wParam == kNotifySettings && !ownNotice) {
    ReloadSwitches();
    RearmListViews();
  }
  return 0;
}

LRESULT ZarfWndApp::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  const auto* const found =
      std::find_if(std::begin(kAcceleratorCommands), std::end(kAcceleratorCommands),
                   [id](const AcceleratorCommand& entry) { return entry.accelerator == id; });
  if (found != std::end(kAcceleratorCommands)) Post(WM_COMMAND, found->command, 0);
  return 0;
}

LRESULT ZarfWndApp::OnGetMinMaxInfo(const MessageRecord& record) {
  auto* const info = reinterpret_cast<MinMaxInfo*>(record.lParam);
  info->minimum = {kFrameWidth, kFrameHeight};
  return DefaultProc(record);
}

LRESULT ZarfWndApp::OnClose(const MessageRecord& record) {
  DestroyWindow(record.hwnd);
  return 0;
}

LRESULT ZarfWndApp::OnDestroy(const MessageRecord&) {
  PostQuitMessage(0);
  return 0;
}
