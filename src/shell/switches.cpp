#include "shell/switches.h"

#include <string>

#include "core/ini_file.h"
#include "framework/services.h"

namespace {

bool splashSwitch = true;

// True unless the settings hold exactly "0".
bool ReadSwitch(const core::IniFile& settings, const char* key) {
  std::string value;
  return !settings.ReadString("Preference", key, value) || value != "0";
}

}  // namespace

void LoadSwitches() {
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
