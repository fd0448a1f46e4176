// Every picture and sound that the program names exists. A missing one draws or plays nothing, which nobody
// would notice.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>

#include "structure/structure_rules.h"

namespace tests {
namespace {

// What matches of a pattern's first group in a text.
std::set<std::string> Matches(const std::string& text, const std::regex& pattern) {
  std::set<std::string> found;
  for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
    found.insert((*match)[1]);
  }
  return found;
}

// The pictures that a source names: file names, cursors, and names given to what loads one.
std::set<std::string> PicturesIn(const std::string& source) {
  static const std::regex kFile("\"([A-Za-z0-9_-]+)\\.bmp\"");
  static const std::regex kCursor("\"(CUR_[A-Z0-9_]+)\"");
  static const std::regex kLoaded(
      "\\b(?:Bitmap::Load|[A-Za-z]+BmpResource)\\([^;\"]*\"([A-Za-z0-9_-]+)\"[,)]");
  static const std::regex kLazy("\\bLazyBitmap [A-Za-z]+\\{\"([A-Za-z0-9_-]+)\"\\}");
  static const std::regex kNumbered("\\bDrawBitmapId\\([^;]*?, ([0-9]+)[,)]");
  std::set<std::string> names;
  for (const std::regex* pattern : {&kFile, &kCursor, &kLoaded, &kLazy, &kNumbered})
    names.merge(Matches(source, *pattern));
  return names;
}

// The beginnings of names that are put together where the picture is loaded.
std::set<std::string> PictureBeginningsIn(const std::string& source) {
  static const std::regex kBeginning(
      "\\b(?:Bitmap::Load|[A-Za-z]+BmpResource)\\([^;\"]*\"([A-Za-z0-9_-]+)\"\\)? \\+");
  return Matches(source, kBeginning);
}

std::set<std::string> SoundsIn(const std::string& source) {
  static const std::regex kSound("\\bPlaySound\\([^;]*?\"([^\"]+)\"");
  return Matches(source, kSound);
}

TEST(ResourceNames, AreFoundInSources) {
  const std::string source =
      "DrawBmpResource(hdc, 1, 2, \"a.bmp\");\n"
      "const char* name = pressed ? \"b_1.bmp\" : \"c.bmp\";\n"
      "auto d = Bitmap::Load(\"d\"); DrawBitmapId(hdc, x, y, 4000);\n"
      "SetCursor(LoadCursor(ok ? \"CUR_A\" : IDC_ARROW)); PlaySound(copy ? \"e.wav\" : name);\n"
      "LazyBitmap strip{\"g\"};\n"
      "Load(\"no_picture\"); LoadBmpResource((\"f_\" + name).c_str());";
  EXPECT_EQ(PictureBeginningsIn(source), (std::set<std::string>{"f_"}));
  EXPECT_EQ(PicturesIn(source), (std::set<std::string>{"a", "b_1", "c", "d", "g", "4000", "CUR_A"}));
  EXPECT_EQ(SoundsIn(source), (std::set<std::string>{"e.wav"}));
}

TEST(ResourceNames, OfTheProgramExist) {
  std::set<std::string> builtIn;
  const std::vector<SourceFile> project = ReadProject(DAYBRIX_SOURCE_FOLDER);
  for (const SourceFile& file : project) {
    if (file.path == "src/resources/resources.qrc")
      builtIn = Matches(file.text, std::regex("alias=\"([^\"]+)\\.png\""));
  }
  ASSERT_FALSE(builtIn.empty());
  const std::string sounds = DAYBRIX_SOURCE_FOLDER "/src/resources/sounds/";
  int names = 0;
  for (const SourceFile& file : project) {
    if (!file.path.starts_with("src/")) continue;
    for (const std::string& name : PicturesIn(file.text)) {
      EXPECT_TRUE(builtIn.contains(name)) << file.path << " names the picture " << name;
      ++names;
    }
    for (const std::string& beginning : PictureBeginningsIn(file.text)) {
      const auto next = builtIn.lower_bound(beginning);
      EXPECT_TRUE(next != builtIn.end() && next->starts_with(beginning))
          << file.path << " names pictures that begin with " << beginning;
    }
    for (const std::string& name : SoundsIn(file.text)) {
      EXPECT_TRUE(std::filesystem::exists(sounds + name)) << file.path << " names the sound " << name;
    }
  }
  EXPECT_GE(names, 10) << "the program names pictures";
}

}  // namespace
}  // namespace tests
