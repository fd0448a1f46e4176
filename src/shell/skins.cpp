#include "shell/skins.h"

#include <strings.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "core/ini_file.h"
#include "framework/notices.h"
#include "platform/system/file.h"
#include "platform/system/profile_file.h"
#include "platform/system/program_folder.h"
#include "shell/copy_notices.h"
#include "shell/skin_colour.h"

namespace {

constexpr const char* kSection = "Preference";
constexpr const char* kCurrentKey = "CurrSkin";
constexpr const char* kDefaultSkin = "1_Metallic.ini";
constexpr std::string_view kSkinEnding = ".ini";
constexpr std::size_t kMostNameBytes = 254;
constexpr std::size_t kMostValueBytes = 259;
constexpr std::size_t kMostSkinBytes = 1 << 20;

using Image = std::unique_ptr<Bitmap>;

struct ImageKey {
  const char* key;
  Image* image;
};

struct ColourKey {
  const char* key;
  COLORREF SkinRecord::*colour;
};

constexpr ColourKey kColourKeys[] = {
    {"colorBack", &SkinRecord::colorBack},
    {"colorBackUp", &SkinRecord::colorBackUp},
    {"colorBackDown", &SkinRecord::colorBackDown},
    {"colorTitle", &SkinRecord::colorTitle},
    {"colorTitleUp", &SkinRecord::colorTitleUp},
    {"colorTitleDown", &SkinRecord::colorTitleDown},
    {"colorFrame", &SkinRecord::colorFrame},
    {"colorFrameUp", &SkinRecord::colorFrameUp},
    {"colorFrameDown", &SkinRecord::colorFrameDown},
    {"colorTextTitle", &SkinRecord::colorTextTitle},
    {"colorPanelFrame", &SkinRecord::colorPanelFrame},
};

// Always holds a record.
std::optional<SkinRecord>& TheSkin() {
  static std::optional<SkinRecord> skin(std::in_place);
  return skin;
}

// In the program folder or, for what was installed, in the share folder.
std::string SkinsFolder() {
  return platform::SharedFilePath("Styles");
}

// A skin file, read once: it has some thirty keys.
std::string ReadSkinFile(const std::string& path) {
  std::string content;
  platform::ReadWholeFile(path, kMostSkinBytes, content);
  return content;
}

// At most `limit` bytes of a value; false when it is missing or empty.
bool ReadValue(const std::string& file, const char* key, std::size_t limit, std::string& value) {
  if (!platform::ReadProfileText(file, kSection, key, value) || value.empty()) return false;
  if (value.size() > limit) value.resize(limit);
  return true;
}

// Whether a name from a skin stays in the folder that it is looked up in. Both slashes separate: skins are
// passed on between systems.
bool StaysInside(std::string_view name) {
  if (name.starts_with('/')) return false;
  while (!name.empty()) {
    const std::size_t end = name.find('/');
    if (name.substr(0, end) == "..") return false;
    name = end == std::string_view::npos ? std::string_view() : name.substr(end + 1);
  }
  return true;
}

// A path in a skin as a path of this system; false when the skin has none that may be followed.
bool ReadPath(const std::string& file, const char* key, std::string& path) {
  if (!ReadValue(file, key, kMostValueBytes, path)) return false;
  for (char& c : path) {
    if (c == '\\') c = '/';
  }
  return StaysInside(path);
}

void LoadImages(SkinRecord& skin, const std::string& file) {
  const std::string styles = SkinsFolder();
  std::string folder;
  std::string name;
  if (!ReadPath(file, "folder", folder) && !folder.empty()) return;
  const ImageKey images[] = {
      {"bmpTitle", &skin.title},
      {"bmpTitle_left", &skin.titleLeft},
      {"bmpTitle_right", &skin.titleRight},
      {"bmpSubTitle", &skin.subTitle},
      {"bmpButtonMinimize_1", &skin.minimize[0]},
      {"bmpButtonMinimize_2", &skin.minimize[1]},
      {"bmpButtonMinimize_3", &skin.minimize[2]},
      {"bmpButtonRestore_1", &skin.maximize[0]},
      {"bmpButtonRestore_2", &skin.maximize[1]},
      {"bmpButtonRestore_3", &skin.maximize[2]},
      {"bmpButtonClose_1", &skin.close[0]},
      {"bmpButtonClose_2", &skin.close[1]},
      {"bmpButtonClose_3", &skin.close[2]},
      {"bmpResize", &skin.resize},
  };
  for (const auto& [key, image] : images) {
    if (!ReadPath(file, key, name)) continue;
    *image = Bitmap::LoadFile(std::string(styles).append("/").append(folder).append("/").append(name));
  }
}

void LoadColours(SkinRecord& skin, const std::string& file) {
  std::string value;
  for (const auto& [key, colour] : kColourKeys) {
    if (ReadValue(file, key, kMostValueBytes, value)) skin.*colour = ParseSkinColour(value);
  }
}

bool EndsAsSkin(const std::string& name) {
  return name.size() >= kSkinEnding.size() &&
         strcasecmp(name.c_str() + name.size() - kSkinEnding.size(), kSkinEnding.data()) == 0;
}

}  // namespace

SkinRecord* GetSkin() {
  SkinRecord& skin = *TheSkin();
  if (skin.loaded) return &skin;
  UnloadSkin();
  const std::string file = ReadSkinFile(SkinsFolder() + "/" + CurrentSkinFile());
  LoadImages(skin, file);
  LoadColours(skin, file);
  skin.loaded = true;
  return &skin;
}

void UnloadSkin() {
  const COLORREF textColour = TheSkin()->colorTextTitle;
  TheSkin().emplace().colorTextTitle = textColour;
}

void ReloadSkin() {
  UnloadSkin();
  GetSkin();
}

std::string CurrentSkinFile() {
  std::string name;
  if (!core::IniFile("Daybrix.ini").ReadString(kSection, kCurrentKey, name)) return kDefaultSkin;
  if (name.size() > kMostValueBytes) name.resize(kMostValueBytes);
  return name;
}

void ChooseSkin(ZarfWnd* owner, const std::string& fileName) {
  const core::IniFile settings("Daybrix.ini");
  if (settings.WriteString(kSection, kCurrentKey, fileName)) {
    BroadcastNotify(kNotifySkin, nullptr);
  } else {
    ShowInfo(owner, "The skin was not changed: " + settings.Path() + " cannot be written.");
  }
}

bool IsCurrentSkin(const std::string& fileName) {
  return strcasecmp(fileName.c_str(), CurrentSkinFile().c_str()) == 0;
}

std::vector<SkinListEntry> BuildSkinList() {
  const std::string styles = SkinsFolder();
  std::vector<SkinListEntry> skins;
  std::vector<std::string> fileNames = platform::ListFolder(styles);
  std::sort(fileNames.begin(), fileNames.end(), [](const std::string& one, const std::string& other) {
    const int order = strcasecmp(one.c_str(), other.c_str());
    return order != 0 ? order < 0 : one < other;
  });
  for (std::string& fileName : fileNames) {
    if (!EndsAsSkin(fileName)) continue;
    const std::string file = ReadSkinFile(std::string(styles).append("/").append(fileName));
    std::string name;
    if (!ReadValue(file, "name", kMostNameBytes, name)) continue;
    skins.push_back({std::move(name), std::move(fileName)});
    if (skins.size() == kMostSkins) break;
  }
  return skins;
}
