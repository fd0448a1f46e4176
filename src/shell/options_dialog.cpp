#include "shell/options_dialog.h"

#include <cstdio>
#include <string>
#include <vector>

#include "controls/watch_timer.h"
#include "core/ini_file.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "platform/system/file.h"
#include "platform/system/program_folder.h"
#include "platform/system/program_start.h"
#include "shell/copy_notices.h"

namespace {

constexpr int kTemplate = 1003;

constexpr const char* kSection = "Preference";
constexpr const char* kRefreshKey = "NetworkRefresh";
constexpr int kMostSeconds = 120;  // that can be chosen; list views take 60 at most
constexpr std::int32_t kUsualSeconds = 2;

struct Switch {
  int box;
  const char* key;
};
constexpr Switch kSwitches[] = {{OptionsDialog::kSoundBox, "Sound"},
                                {OptionsDialog::kAnimationBox, "Annimation"},
                                {OptionsDialog::kSplashBox, "Splash"}};

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
  tray.Check(trayRuns);
  tray.Enable(!trayRuns && platform::FileExists(TrayProgram()));
  for (int seconds = 1; seconds <= kMostSeconds; ++seconds) {
    refresh.Add(std::to_string(seconds) + " sec.");
  }
  std::int32_t seconds = kUsualSeconds;
  settings.ReadInt(kSection, kRefreshKey, seconds);
  refresh.Select(seconds >= 1 && seconds <= kMostSeconds ? seconds - 1 : -1);
  return 1;
}

LRESULT OptionsDialog::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) != IDOK) return ZarfDialog::OnCommand(record);
  Save();
  const bool trayWanted = tray.Checked() && IsWindowEnabled(tray.Handle());
  if (trayWanted && !platform::ProgramRuns(TrayProgram())) platform::StartProgram(TrayProgram());
  EndDialog(1);
  return 1;
}

void OptionsDialog::Save() {
  std::vector<core::IniEntry> entries;
  for (const auto& [box, key] : kSwitches)
    entries.push_back({key, IsDlgButtonChecked(hwnd, box) ? "1" : "0"});
  entries.push_back({kRefreshKey, std::to_string(refresh.Selected() + 1)});
  const core::IniFile settings = Settings();
  const bool saved = settings.Write(kSection, entries);
  SetSoundEnabled(IsDlgButtonChecked(hwnd, kSoundBox) ? 1 : 0);
  SetAnimationEnabled(IsDlgButtonChecked(hwnd, kAnimationBox) ? 1 : 0);
  RearmWatchTimer();
  if (!saved)
    ShowInfo(this, "The options last until the program ends: " + settings.Path() + " cannot be written.");
}

void ShowOptionsDialog(ZarfWnd& frame) {
  if (OptionsDialog().Open(&frame, kTemplate) > 0) BroadcastNotify(kNotifySettings, frame.Handle());
}
