#include "shell/options_dialog.h"

#include <cstdio>
#include <string>

#include "controls/list_refresh.h"
#include "core/ini_file.h"
#include "framework/services.h"
#include "platform/system/program_folder.h"
#include "platform/system/program_start.h"
#include "shell/application.h"
#include "shell/main_frame.h"

namespace {

constexpr int kTemplate = 1003;
constexpr int kSoundBox = 100;
constexpr int kAnimationBox = 101;
constexpr int kSplashBox = 102;
constexpr int kRefreshList = 103;
constexpr int kTrayBox = 104;

constexpr const char* kSection = "Preference";
constexpr const char* kRefreshKey = "NetworkRefresh";
constexpr int kMostSeconds = 120;  // that can be chosen; list views take 60 at most
constexpr std::int32_t kUsualSeconds = 2;

struct Switch {
  int box;
  const char* key;
};
constexpr Switch kSwitches[] = {{kSoundBox, "Sound"}, {kAnimationBox, "Annimation"}, {kSplashBox, "Splash"}};

core::IniFile Settings() {
  return core::IniFile("Daybrix.ini");
}

// Stricter than the start, which takes anything but "0" for on: what is neither shows as off.
bool IsShownOn(const core::IniFile& settings, const char* key) {
  std::string value;
  return !settings.ReadString(kSection, key, value) || value == "1";
}

std::string TrayProgram() {
  const std::string own = platform::ExecutablePath();
  return own.substr(0, own.rfind('/') + 1) + "Daybrix";
}

}  // namespace

LRESULT OptionsDialog::OnInitDialog(const MessageRecord&) {
  const core::IniFile settings = Settings();
  for (const auto& [box, key] : kSwitches) CheckDlgButton(hwnd, box, IsShownOn(settings, key));
  const bool trayRuns = platform::ProgramRuns(TrayProgram());
  CheckDlgButton(hwnd, kTrayBox, trayRuns);
  EnableWindow(GetDlgItem(hwnd, kTrayBox), !trayRuns);
  for (int seconds = 1; seconds <= kMostSeconds; ++seconds) {
    char text[16];
    std::snprintf(text, sizeof text, "%d sec.", seconds);
    SendItemMessage(kRefreshList, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
  }
  std::int32_t seconds = kUsualSeconds;
  settings.ReadInt(kSection, kRefreshKey, seconds);
  const int line = seconds >= 1 && seconds <= kMostSeconds ? seconds - 1 : -1;
  SendItemMessage(kRefreshList, CB_SETCURSEL, static_cast<WPARAM>(line), 0);
  CenterOver(Parent(), hwnd);
  return 1;
}

LRESULT OptionsDialog::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) != IDOK) return ZarfDialog::OnCommand(record);
  Save();
  const bool trayWanted = IsDlgButtonChecked(hwnd, kTrayBox) && IsWindowEnabled(GetDlgItem(hwnd, kTrayBox));
  if (trayWanted && !platform::ProgramRuns(TrayProgram())) platform::StartProgram(TrayProgram());
  EndDialog(1);
  return 1;
}

void OptionsDialog::Save() {
  const core::IniFile settings = Settings();
  for (const auto& [box, key] : kSwitches)
    settings.WriteString(kSection, key, IsDlgButtonChecked(hwnd, box) ? "1" : "0");
  SetSoundEnabled(IsDlgButtonChecked(hwnd, kSoundBox) ? 1 : 0);
  SetAnimationEnabled(IsDlgButtonChecked(hwnd, kAnimationBox) ? 1 : 0);
  const LRESULT line = SendItemMessage(kRefreshList, CB_GETCURSEL, 0, 0);
  settings.WriteInt(kSection, kRefreshKey, static_cast<std::int32_t>(line) + 1);
  RearmListViews();
}

void ShowOptionsDialog(ZarfWnd* owner) {
  if (OptionsDialog().Open(owner, kTemplate) > 0) BroadcastNotify(kNotifySettings, TheApp().Handle());
}
