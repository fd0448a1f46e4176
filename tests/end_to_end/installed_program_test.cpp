// The program where `cmake --install` puts it: it must find what belongs to it, and leave the place as it is.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "end_to_end/running_program.h"
#include "end_to_end/virtual_display.h"
#include "platform/system/file.h"
#include "support/source_folder.h"
#include "support/temporary_folder.h"
#include "support/wait_until.h"

namespace {

using tests::RunningProgram;

// What a window shows once it has come to rest: on a busy machine it is there for a while before it is
// painted.
std::string SettledPicture(const tests::VirtualDisplay& display, const std::string& window) {
  constexpr int kEnough = 10;
  std::string picture;
  int same = 0;
  tests::WaitUntil(
      [&] {
        const std::string before = std::exchange(picture, display.Picture(window));
        same = picture == before ? same + 1 : 0;
        return same >= kEnough;
      },
      15000);
  return picture;
}

TEST(InstalledProgram, LooksAsBuiltAndWritesIntoTheUsersFolderOnly) {
  const tests::VirtualDisplay display;
  const tests::TemporaryFolder folder;
  const std::string prefix = folder.Join("usr");
  tests::Shell("'" CMAKE "' --install '" BUILD_FOLDER "' --component Unspecified --prefix '" + prefix + "'");
  for (const char* name :
       {SOUND_MODULE, "share/daybrix/select.wav", "share/daybrix/Help/calendar.htm",
        "share/applications/tempoline.desktop", "share/mime/packages/tempoline.xml",
        "share/man/man1/tempoline-cli.1", "share/man/man1/tempoline.1", "share/man/man5/cld.5",
        "share/metainfo/org.daybrix.tempoline.metainfo.xml",
        "share/bash-completion/completions/tempoline-cli", "share/icons/hicolor/48x48/apps/tempoline.png",
        "share/icons/hicolor/scalable/apps/tempoline.svg"}) {
    EXPECT_TRUE(platform::FileExists(prefix + "/" + name)) << name;
  }

  std::filesystem::create_directory(folder.Join("built"));
  std::filesystem::copy(tests::SourceFolder() + "/src/resources/styles", folder.Join("built/Styles"),
                        std::filesystem::copy_options::recursive);
  RunningProgram built(display.Name(), folder.Join("built"), "");
  const std::string look = SettledPicture(display, display.WaitForWindow(built.Process(), "Daybrix"));
  EXPECT_EQ(built.Close(), 0);

  // A clone that is gone by now was in the user's menu, in front of the installed program.
  const std::string home = folder.Join("home");
  const std::string data = home + "/.local/share/";
  tests::Shell("HOME='" + home + "' env -u XDG_DATA_HOME '" + tests::SourceFolder() +
               "/scripts/menu-entry' add '/a \"$clone/tempoline'");
  ASSERT_TRUE(platform::FileExists(data + "icons/hicolor/48x48/apps/tempoline.png"));
  tests::Shell("cd '" + data + "icons/hicolor' && touch icon-theme.cache 48x48/apps/other.png");
  RunningProgram installed = RunningProgram::Installed(display.Name(), prefix + "/bin/tempoline", home);
  const std::string window = display.WaitForWindow(installed.Process(), "Daybrix");
  EXPECT_TRUE(tests::WaitUntil([&] { return display.Picture(window) == look; }, 15000))
      << "another skin, or none";
  EXPECT_EQ(installed.Close(), 0);
  EXPECT_EQ(tests::Shell("cd '" + data +
                         "' && find daybrix applications icons mime/packages -type f ! -name '*.lock' ! "
                         "-name mimeinfo.cache | sort"),
            "daybrix/Daybrix.ini\ndaybrix/tempoline.ini\ndaybrix/works/tempoline.cld\nicons/hicolor/48x48/"
            "apps/other.png");
  const std::vector<std::string> programs = platform::ListFolder(prefix + "/bin");
  EXPECT_EQ(std::set(programs.begin(), programs.end()),
            (std::set<std::string>{"tempoline", "tempoline-cli"}));
  tests::Shell("'" CMAKE "' -DMANIFEST='" BUILD_FOLDER "/install_manifest_Unspecified.txt' -P '" +
               tests::SourceFolder() + "/cmake/uninstall.cmake'");
  EXPECT_EQ(tests::Shell("find '" + prefix + "' -type f -o -name daybrix"), "");
}

}  // namespace
