// The help pages: what they link to is there, every page and picture is linked to, and the page of the keys
// has those of the main window.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>

#include "platform/desktop/messages.h"
#include "shell/accelerators.h"
#include "support/source_folder.h"

namespace tests {
namespace {

std::string HelpFolder() {
  return SourceFolder() + "/src/resources/help/";
}

std::string Page(const std::string& name) {
  std::ifstream stream(HelpFolder() + name);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

// What a page links to: other pages, pictures and its style sheet.
std::set<std::string> LinksOf(const std::string& page) {
  static const std::regex kLink("(?:href|src)=\"([^\"]*)\"");
  std::set<std::string> links;
  for (auto at = std::sregex_iterator(page.begin(), page.end(), kLink); at != std::sregex_iterator(); ++at) {
    links.insert((*at)[1]);
  }
  return links;
}

TEST(HelpPages, LinkToWhatIsThereAndLeaveNothingOut) {
  std::set<std::string> files;
  std::set<std::string> linked;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(HelpFolder())) {
    if (entry.is_directory()) continue;
    const std::string name = std::filesystem::relative(entry.path(), HelpFolder()).string();
    files.insert(name);
    if (name.ends_with(".htm")) linked.merge(LinksOf(Page(name)));
  }
  EXPECT_EQ(linked, files);
  const std::set<std::string> fromFirst = LinksOf(Page("calendar.htm"));
  for (const std::string& name : files) {
    EXPECT_TRUE(!name.ends_with(".htm") || name == "calendar.htm" || fromFirst.contains(name)) << name;
  }
}

std::string KeyName(unsigned key) {
  switch (key) {
    case VK_INSERT:
      return "Insert";
    case VK_DELETE:
      return "Delete";
    case VK_RETURN:
      return "Enter";
    case VK_F1:
      return "F1";
    default:
      return {static_cast<char>(key)};
  }
}

TEST(HelpPages, NameTheKeysOfTheMainWindow) {
  const std::string page = Page("keys.htm");
  std::set<std::string> keys;
  for (const Accelerator& entry : LoadAccelerators("ACC")) {
    keys.insert(((entry.modifiers & FCONTROL) != 0 ? "Ctrl+"
                 : (entry.modifiers & FALT) != 0   ? "Alt+"
                                                   : "") +
                KeyName(entry.key));
  }
  for (const std::string& key : keys)
    EXPECT_NE(page.find("<kbd>" + key + "</kbd>"), std::string::npos) << key;
  static const std::regex kCombination("<kbd>((?:Ctrl|Alt)\\+[^<]*)</kbd>");
  for (auto at = std::sregex_iterator(page.begin(), page.end(), kCombination); at != std::sregex_iterator();
       ++at) {
    EXPECT_TRUE(keys.contains((*at)[1])) << (*at)[1];
  }
}

}  // namespace
}  // namespace tests
