#include "shell/application.h"

#include <strings.h>

#include "core/ini_file.h"
#include "framework/fonts.h"
#include "framework/services.h"
#include "platform/desktop/application.h"
#include "platform/desktop/window.h"
#include "platform/system/running_copies.h"
#include "shell/accelerators.h"
#include "shell/application_object.h"
#include "shell/main_frame.h"
#include "shell/splash.h"

namespace {

ZarfWndApp* applicationObject = nullptr;
bool splashSwitch = true;

std::string& CommandLineStore() {
  static std::string file;
  return file;
}

// Lives until the process ends: its descriptor is watched until then.
platform::RunningCopies& Copies() {
  static platform::RunningCopies copies;
  return copies;
}

void PassNoticesOn() {
  std::int32_t code = 0;
  while (Copies().Receive(code)) PostToAll(NotifyMessage(), static_cast<WPARAM>(code), 0);
}

// True unless the settings hold exactly "0".
bool ReadSwitch(const core::IniFile& settings, const char* key) {
  std::string value;
  return !settings.ReadString("Preference", key, value) || value != "0";
}

// In a text field the keys belong to the text.
bool FocusIsInTextField() {
  return strcasecmp(GetClassName(GetFocus()).c_str(), "edit") == 0;
}

}  // namespace

void SetApplicationObject(ZarfWndApp* application) {
  applicationObject = application;
}

ZarfWndApp& TheApp() {
  return *applicationObject;
}

const std::string& CommandLineFile() {
  return CommandLineStore();
}

void LoadSettings() {
  CreateFonts();
  const core::IniFile settings("Daybrix.ini");
  SetSoundEnabled(ReadSwitch(settings, "Sound") ? 1 : 0);
  SetAnimationEnabled(ReadSwitch(settings, "Annimation") ? 1 : 0);
  splashSwitch = ReadSwitch(settings, "Splash");
}

void ReloadSwitches() {
  const core::IniFile settings("Daybrix.ini");
  std::int32_t value = 0;
  if (settings.ReadInt("Preference", "Sound", value)) SetSoundEnabled(value);
  if (settings.ReadInt("Preference", "Annimation", value)) SetAnimationEnabled(value);
}

bool SplashEnabled() {
  return splashSwitch;
}

UINT NotifyMessage() {
  static const UINT message = RegisterWindowMessage("ZARF_UNIQUE_MSG201270");
  return message;
}

bool OtherCopiesRun() {
  return Copies().Others();
}

void BroadcastNotify(int code, HWND senderWindow) {
  Copies().Broadcast(code);
  // Not by the socket: the change must show here even where somebody tidied the runtime folder away.
  PostToAll(NotifyMessage(), static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(senderWindow));
}

int RunApplication(ZarfWndApp& application, const std::string& file) {
  CommandLineStore() = file;
  if (file.empty() && !platform::HoldInstance(application.WindowClass())) return 0;
  LoadSettings();
  if (Copies().Descriptor() < 0 && Copies().Open()) WatchDescriptor(Copies().Descriptor(), PassNoticesOn);
  if (SplashEnabled()) ShowSplash();

  if (!application.Create(nullptr)) {
    DeleteFonts();
    return 1;
  }
  ShowWindow(application.Handle(), SW_SHOWNORMAL);
  UpdateWindow(application.Handle());

  const std::span<const Accelerator> keys = LoadAccelerators("ACC");
  const int exitCode = RunMessageLoop(application.Handle(), [&](const MessageRecord& message) {
    return !FocusIsInTextField() && TranslateAccelerator(application.Handle(), keys, message);
  });
  DeleteFonts();
  return exitCode;
}
