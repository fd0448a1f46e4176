#include "framework/file_type.h"

#include <cstdlib>
#include <string_view>

#include "framework/packaged_files.h"
#include "platform/desktop/shell.h"
#include "platform/system/file.h"
#include "platform/system/program_folder.h"

namespace {

constexpr std::string_view kEntryName = "/applications/tempoline.desktop";
constexpr std::size_t kLongestFile = 1 << 20;

std::string Replaced(std::string text, std::string_view from, const std::string& to) {
  const std::size_t at = text.find(from);
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

// A path as one word of a desktop entry's command: quoted, its own marks escaped, and the whole escaped once
// more as every value is.
std::string CommandWord(const std::string& path) {
  std::string word = "\"";
  for (const char c : path) {
    if (c == '\\') {
      word += "\\\\\\\\";
    } else if (c == '"' || c == '`' || c == '$') {
      word += std::string("\\\\") + c;
    } else if (c == '%') {
      word += "%%";
    } else {
      word += c;
    }
  }
  return word + '"';
}

bool IsPlain(const std::string& extension) {
  for (const char c : extension) {
    if ((c < 'a' || c > 'z') && (c < '0' || c > '9')) return false;
  }
  return !extension.empty();
}

// False when the file says so already or cannot be written.
bool WriteIfDifferent(const std::string& path, const std::string& content) {
  std::string present;
  if (content.empty() || (platform::ReadWholeFile(path, kLongestFile, present) && present == content))
    return false;
  platform::MakeFolder(path.substr(0, path.rfind('/')));
  return platform::ReplaceFile(path, content.data(), content.size());
}

bool IsInstalled(const std::string& program) {
  const std::string folder = program.substr(0, program.rfind('/'));
  return platform::FileExists(folder + "/../share" + std::string(kEntryName));
}

}  // namespace

bool RegisterFileType(const std::string& extension) {
  const char* portable = std::getenv("DAYBRIX_FOLDER");
  const std::string program = platform::ExecutablePath();
  const bool speakable = program.find('\n') == std::string::npos;
  if ((portable != nullptr && *portable != '\0') || !IsPlain(extension) || !speakable || IsInstalled(program))
    return true;

  const std::string data = platform::UserDataFolder();
  bool iconsChanged = false;
  for (const std::string size : {"16", "32", "48", "64", "128"}) {
    std::string icon = data;
    icon.append("/icons/hicolor/").append(size).append("x").append(size).append("/apps/tempoline.png");
    if (WriteIfDifferent(icon, BuiltInPictureFile("icon-" + size))) iconsChanged = true;
  }
  if (WriteIfDifferent(data + "/mime/packages/tempoline-mime.xml",
                       Replaced(kMimePackage, "*.cld", "*." + extension))) {
    RunInBackground("update-mime-database", {data + "/mime"});
  }
  if (WriteIfDifferent(data + std::string(kEntryName),
                       Replaced(kDesktopEntry, "Exec=tempoline", "Exec=" + CommandWord(program)))) {
    RunInBackground("update-desktop-database", {data + "/applications"});
  }
  if (iconsChanged) RunInBackground("gtk-update-icon-cache", {"-f", "-t", data + "/icons/hicolor"});
  return true;
}
