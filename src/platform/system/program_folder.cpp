#include "platform/system/program_folder.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <string_view>

#include "platform/system/file.h"

namespace platform {
namespace {

constexpr std::string_view kProduct = "daybrix";

std::string FolderOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

std::string ReadExecutablePath() {
  std::array<char, PATH_MAX> buffer;
  const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
  if (length <= 0) return {};
  std::string path(buffer.data(), static_cast<std::size_t>(length));
  // What the system adds when the program was replaced (by an update) while it runs.
  constexpr std::string_view kGone = " (deleted)";
  if (path.ends_with(kGone) && !FileExists(path)) path.resize(path.size() - kGone.size());
  return path;
}

// Absolute and without slashes at the end.
std::string Tidy(std::string folder) {
  if (!folder.starts_with('/')) {
    std::array<char, PATH_MAX> current;
    if (getcwd(current.data(), current.size()) != nullptr) {
      folder.insert(0, std::string(current.data()) + '/');
    }
  }
  while (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  return folder;
}

std::string HomeFolder() {
  std::string home = Variable("HOME");
  if (!home.empty()) return home;
  const passwd* user = getpwuid(geteuid());
  return user == nullptr ? "/" : user->pw_dir;
}

// What an installed program reads. The build says where it lies as seen from the program's folder.
std::string InstalledShareFolder() {
  std::string folder = FolderOf(ExecutablePath());
  std::string_view rest = SHARE_FROM_PROGRAM;
  for (constexpr std::string_view kUp = "../"; rest.starts_with(kUp); rest.remove_prefix(kUp.size()))
    folder = FolderOf(folder);
  return folder.append("/").append(rest);
}

std::string UserFolder() {
  return Tidy(UserDataFolder() + '/' + std::string(kProduct));
}

std::string ChooseProgramFolder() {
  const std::string named = Variable("DAYBRIX_FOLDER");
  if (!named.empty()) {
    std::string folder = Tidy(named);
    MakeFolder(folder);
    return folder;
  }
  std::string own = FolderOf(ExecutablePath());
  // Even who may write there (root, or a user with programs of his own) wants no settings among programs.
  if (!IsInstalled() && access(own.c_str(), W_OK | X_OK) == 0) return own;
  std::string folder = UserFolder();
  MakeFolder(folder);  // if it cannot be made, nothing is saved, and what tries to save says so
  return folder;
}

}  // namespace

std::string ExecutablePath() {
  static const std::string kPath = ReadExecutablePath();
  return kPath;
}

std::string ExecutableBaseName() {
  const std::string path = ExecutablePath();
  const std::string name = path.substr(path.rfind('/') + 1);
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos || dot == 0 ? name : name.substr(0, dot);
}

bool IsInstalled() {
  return FileExists(InstalledShareFolder() + "/Styles");
}

std::string ProgramFolder() {
  static const std::string kFolder = ChooseProgramFolder();
  return kFolder;
}

std::string UserDataFolder() {
  std::string data = Variable("XDG_DATA_HOME");
  if (!data.starts_with('/')) data = HomeFolder() + "/.local/share";  // a relative one is to be ignored
  return Tidy(data);
}

std::string SharedFilePath(const std::string& name) {
  for (const std::string& folder : {ProgramFolder(), FolderOf(ExecutablePath())}) {
    std::string path = folder;
    path.append("/").append(name);
    if (FileExists(path)) return path;
  }
  return InstalledShareFolder() + '/' + name;
}

}  // namespace platform
