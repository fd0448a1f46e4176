#include "framework/menu_entry.h"

#include <cstdlib>
#include <string>

#include "platform/desktop/shell.h"
#include "platform/system/file.h"
#include "platform/system/program_folder.h"

namespace {

constexpr std::size_t kLongestEntry = 1 << 16;

}  // namespace

bool IsStaleMenuEntry(std::string_view entry, std::string_view program) {
  // As scripts/menu-entry writes it: nothing but a quoted path and the place of the file.
  constexpr std::string_view kBefore = "\nExec=\"/";
  constexpr std::string_view kAfter = "/tempoline\" %f";
  const std::size_t before = entry.find(kBefore);
  if (before == std::string_view::npos) return false;
  entry.remove_prefix(before + kBefore.size() - 1);
  entry = entry.substr(0, entry.find('\n'));
  if (!entry.ends_with(kAfter)) return false;
  return entry.substr(0, entry.rfind('"')) != program;
}

void RemoveStaleMenuEntry() {
  const char* portable = std::getenv("DAYBRIX_FOLDER");
  if ((portable != nullptr && *portable != '\0') || !platform::IsInstalled()) return;
  const std::string data = platform::UserDataFolder();
  const std::string file = data + "/applications/tempoline.desktop";
  std::string entry;
  if (!platform::ReadWholeFile(file, kLongestEntry, entry) ||
      !IsStaleMenuEntry(entry, platform::ExecutablePath()) || !platform::RemoveFile(file))
    return;

  RunInBackground("update-desktop-database", {data + "/applications"});
  if (platform::RemoveFile(data + "/mime/packages/tempoline-mime.xml"))
    RunInBackground("update-mime-database", {data + "/mime"});
  const std::string icons = data + "/icons/hicolor/";
  for (const std::string& size : platform::ListFolder(icons)) {
    for (const char* icon : {"/apps/tempoline.png", "/apps/tempoline.svg"})
      platform::RemoveFile(std::string(icons).append(size).append(icon));
  }
  // A cache that is older than its folders hides the icons of other programs.
  platform::RemoveFile(icons + "icon-theme.cache");
}
