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
  tests::Shell("'" CMAKE "' --install '" BUILD_FOLDER "' --prefix '" + prefix + "'");
  for (const char* name :
       {"lib/daybrix/libtempoline_sound.so", "share/daybrix/select.wav", "share/daybrix/Help/calendar.htm",
        "share/applications/tempoline.desktop", "share/mime/packages/tempoline.xml",
        "share/man/man1/tempoline-cli.1", "share/bash-completion/completions/tempoline-cli",
        "share/icons/hicolor/48x48/apps/tempoline.png", "share/icons/hicolor/scalable/apps/tempoline.svg"}) {
    EXPECT_TRUE(platform::FileExists(prefix + "/" + name)) << name;
  }

  std::filesystem::create_directory(folder.Join("built"));
  std::filesystem::copy(tests::SourceFolder() + "/src/resources/styles", folder.Join("built/Styles"),
                        std::filesystem::copy_options::recursive);
  RunningProgram built(display.Name(), folder.Join("built"), "");
  const std::string look = SettledPicture(display, display.WaitForWindow(built.Process(), "Daybrix"));
  EXPECT_EQ(built.Close(), 0);

  const std::string home = folder.Join("home");
  RunningProgram installed = RunningProgram::Installed(display.Name(), prefix + "/bin/tempoline", home);
  const std::string window = display.WaitForWindow(installed.Process(), "Daybrix");
  EXPECT_TRUE(tests::WaitUntil([&] { return display.Picture(window) == look; }, 15000))
      << "another skin, or none";
  EXPECT_EQ(installed.Close(), 0);
  EXPECT_TRUE(platform::FileExists(home + "/.local/share/daybrix/tempoline.ini"));
  EXPECT_TRUE(platform::FileExists(home + "/.local/share/daybrix/works/tempoline.cld"));
  const std::vector<std::string> programs = platform::ListFolder(prefix + "/bin");
  EXPECT_EQ(std::set(programs.begin(), programs.end()),
            (std::set<std::string>{"tempoline", "tempoline-cli"}));
}

}  // namespace
