#include "shell/application.h"

#include <strings.h>

#include "framework/fonts.h"
#include "platform/desktop/application.h"
#include "platform/desktop/window.h"
#include "platform/system/running_copies.h"
#include "shell/accelerators.h"
#include "shell/copy_notices.h"
#include "shell/main_frame.h"
#include "shell/splash.h"
#include "shell/switches.h"

namespace {

std::string& CommandLineStore() {
  static std::string file;
  return file;
}

// In a text field the keys belong to the text; another window may keep one for itself.
bool FocusKeeps(const MessageRecord& message) {
  const HWND focus = GetFocus();
  if (strcasecmp(GetClassName(focus).c_str(), "edit") == 0) return true;
  const ZarfWnd* object = ObjectFromHandle(focus);
  return message.message == WM_KEYDOWN && object != nullptr &&
         object->KeepsKey(static_cast<unsigned>(message.wParam));
}

}  // namespace

const std::string& CommandLineFile() {
  return CommandLineStore();
}

int RunApplication(ZarfWndApp& application, const std::string& file) {
  CommandLineStore() = file;
  if (file.empty() && !platform::HoldInstance(application.WindowClass())) {
    JoinCopies();
    BroadcastNotify(kNotifyRaise, nullptr);
    return 0;
  }
  CreateFonts();
  LoadSwitches();
  JoinCopies();
  if (SplashEnabled()) ShowSplash();

  if (!application.Create(nullptr)) {
    DeleteFonts();
    return 1;
  }
  ShowWindow(application.Handle(), SW_SHOWNORMAL);
  UpdateWindow(application.Handle());

  const std::span<const Accelerator> keys = LoadAccelerators("ACC");
  const int exitCode = RunMessageLoop(application.Handle(), [&](const MessageRecord& message) {
    return !FocusKeeps(message) && TranslateAccelerator(application.Handle(), keys, message);
  });
  DeleteFonts();
  return exitCode;
}
