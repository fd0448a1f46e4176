// What the tests of the shell's dialogs share: an empty program folder, a window over which dialogs open and
// which writes down the notices, and the user.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "core/ini_file.h"
#include "resources/resources.h"
#include "shell/copy_notices.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/temporary_folder.h"

namespace tests {

class NoticedWindow : public HostWindow {
 public:
  using Notice = std::pair<WPARAM, LPARAM>;
  std::vector<Notice> notices;

  LRESULT WindowProc(const MessageRecord& record) override {
    if (record.message == NotifyMessage()) notices.emplace_back(record.wParam, record.lParam);
    return HostWindow::WindowProc(record);
  }
};

class ShellTest : public testing::Test {
 protected:
  ShellTest() {
    for (const auto& entry : std::filesystem::directory_iterator(Folder().Path())) {
      std::filesystem::remove_all(entry.path());
    }
  }

  // The program folder of this process.
  static const TemporaryFolder& Folder() {
    static const TemporaryFolder folder;
    static const bool named = setenv("DAYBRIX_FOLDER", folder.Path().c_str(), 1) == 0 &&
                              setenv("XDG_RUNTIME_DIR", folder.Path().c_str(), 1) == 0;
    EXPECT_TRUE(named);
    return folder;
  }

  static void Set(const char* key, const std::string& value) {
    EXPECT_TRUE(core::IniFile("Daybrix.ini").WriteString("Preference", key, value));
  }
  static std::string Setting(const char* key) {
    std::string value;
    core::IniFile("Daybrix.ini").ReadString("Preference", key, value);
    return value;
  }

  DesktopDriver driver;
  NoticedWindow owner;
};

}  // namespace tests
