// Every picture and sound that the program names exists. A missing one draws or plays nothing, which nobody
// would notice.
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <regex>
#include <string>
#include <vector>

#include "structure/structure_rules.h"
#include "support/source_folder.h"

namespace tests {
namespace {

// Each name that a pattern's first group finds in src/, with a file that has it. That there is one shows that
// the pattern still fits the sources.
std::map<std::string, std::string> Named(const std::string& pattern) {
  static const std::vector<SourceFile> project = ReadProject(tests::SourceFolder());
  const std::regex expression(pattern);
  std::map<std::string, std::string> found;
  for (const SourceFile& file : project) {
    if (!file.path.starts_with("src/")) continue;
    std::sregex_iterator match(file.text.begin(), file.text.end(), expression);
    for (; match != std::sregex_iterator(); ++match) found.emplace((*match)[1], file.path);
  }
  EXPECT_FALSE(found.empty()) << pattern;
  return found;
}

const std::string kLoading = "\\b(?:Bitmap::Load|[A-Za-z]+BmpResource)\\([^;\"]*\"([A-Za-z0-9_-]+)\"";

TEST(ResourceNames, OfTheProgramExist) {
  const auto builtIn = Named("alias=\"([^\"]+)\\.png\"");
  // File names, cursors, and names given to what loads a picture.
  for (const std::string& pattern :
       {std::string("\"([A-Za-z0-9_-]+)\\.bmp\""), std::string("\"(CUR_[A-Z0-9_]+)\""), kLoading + "[,)]",
        std::string("\\bLazyBitmap [A-Za-z]+\\{\"([A-Za-z0-9_-]+)\"\\}")}) {
    for (const auto& [name, path] : Named(pattern)) {
      EXPECT_TRUE(builtIn.contains(name)) << path << " names the picture " << name;
    }
  }
  // The beginnings of names that are put together where the picture is loaded.
  for (const auto& [beginning, path] : Named(kLoading + "\\)? \\+")) {
    const auto next = builtIn.lower_bound(beginning);
    EXPECT_TRUE(next != builtIn.end() && next->first.starts_with(beginning))
        << path << " names pictures that begin with " << beginning;
  }
  for (const auto& [name, path] : Named("\\bPlaySound\\([^;]*?\"([^\"]+)\"")) {
    EXPECT_TRUE(std::filesystem::exists(tests::SourceFolder() + "/src/resources/sounds/" + name))
        << path << " names the sound " << name;
  }
}

}  // namespace
}  // namespace tests
