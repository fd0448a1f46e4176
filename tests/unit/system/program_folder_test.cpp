#include "platform/system/program_folder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>
#include <vector>

#include "platform/system/file.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace {

using tests::TemporaryFolder;

struct Folders {
  std::string executable;
  std::string baseName;
  std::string program;
  std::string helpPage;
};

// A program in the folder's bin/, which everybody may read and its owner may write to or not.
class ProgramFolderTest : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(platform::MakeFolder(folder.Join("bin")));
    ASSERT_TRUE(platform::MakeFolder(folder.Join("home")));
    ASSERT_TRUE(platform::MakeFolder(folder.Join("work")));
    std::filesystem::copy_file(PRINT_FOLDERS, folder.Join("bin/tempoline.bin"));
    for (const char* name : {"", "home", "work"}) chmod(folder.Join(name).c_str(), 0777);
  }
  void TearDown() override { chmod(folder.Join("bin").c_str(), 0755); }

  // What the program says, run in the folder's work/ with these variables and without any other.
  Folders Run(const std::vector<std::string>& variables) const {
    const std::string output = "work/output";
    unlink(folder.Join(output).c_str());
    tests::RunUnprivileged([&] {
      std::vector<char*> environment;
      environment.reserve(variables.size() + 1);
      for (const std::string& one : variables) environment.push_back(const_cast<char*>(one.c_str()));
      environment.push_back(nullptr);
      const std::string program = folder.Join("bin/tempoline.bin");
      char* const arguments[] = {const_cast<char*>("x"), nullptr};
      if (chdir(folder.Join("work").c_str()) != 0) return 1;
      if (std::freopen("output", "w", stdout) == nullptr) return 2;
      execve(program.c_str(), arguments, environment.data());
      return 3;
    });
    std::istringstream lines(folder.Read(output));
    Folders said;
    std::getline(lines, said.executable);
    std::getline(lines, said.baseName);
    std::getline(lines, said.program);
    std::getline(lines, said.helpPage);
    return said;
  }

  const TemporaryFolder folder;
};

TEST_F(ProgramFolderTest, IsTheExecutablesFolderWhereThatCanBeWritten) {
  chmod(folder.Join("bin").c_str(), 0777);
  const Folders said = Run({"HOME=" + folder.Join("home")});
  EXPECT_EQ(said.executable, folder.Join("bin/tempoline.bin"));
  EXPECT_EQ(said.baseName, "tempoline");
  EXPECT_EQ(said.program, folder.Join("bin"));
  EXPECT_EQ(said.helpPage, folder.Join("share/daybrix/help.html"));
  folder.Write("bin/help.html", "");
  EXPECT_EQ(Run({"HOME=" + folder.Join("home")}).helpPage, folder.Join("bin/help.html"));
}

TEST_F(ProgramFolderTest, IsTheUsersOwnWhereTheProgramIsInstalled) {
  chmod(folder.Join("bin").c_str(), 0555);
  const std::string home = "HOME=" + folder.Join("home");
  const std::string data = "XDG_DATA_HOME=" + folder.Join("home/data");
  EXPECT_EQ(Run({home}).program, folder.Join("home/.local/share/daybrix"));
  EXPECT_EQ(Run({home, "XDG_DATA_HOME=data"}).program, folder.Join("home/.local/share/daybrix"));
  EXPECT_TRUE(platform::FileExists(folder.Join("home/.local/share/daybrix")));
  EXPECT_EQ(Run({home, data}).program, folder.Join("home/data/daybrix"));
  EXPECT_TRUE(platform::FileExists(folder.Join("home/data/daybrix")));
  EXPECT_EQ(Run({home, data}).helpPage, folder.Join("share/daybrix/help.html"));
  folder.Write("home/data/daybrix/help.html", "");
  EXPECT_EQ(Run({home, data}).helpPage, folder.Join("home/data/daybrix/help.html"));
  // Also for those who may write among the programs.
  chmod(folder.Join("bin").c_str(), 0777);
  EXPECT_EQ(Run({home, data}).program, folder.Join("bin"));
  std::filesystem::create_directories(folder.Join("share/daybrix/Styles"));
  EXPECT_EQ(Run({home, data}).program, folder.Join("home/data/daybrix"));
}

TEST_F(ProgramFolderTest, IsTheOneThatIsNamed) {
  EXPECT_EQ(Run({"DAYBRIX_FOLDER=" + folder.Join("home/demo//")}).program, folder.Join("home/demo"));
  EXPECT_TRUE(platform::FileExists(folder.Join("home/demo")));
  EXPECT_EQ(Run({"DAYBRIX_FOLDER=mine"}).program, folder.Join("work/mine"));
  folder.Write("bin/help.html", "");
  EXPECT_EQ(Run({"DAYBRIX_FOLDER=mine"}).helpPage, folder.Join("bin/help.html"));
  chmod(folder.Join("bin").c_str(), 0777);
  EXPECT_EQ(Run({"DAYBRIX_FOLDER="}).program, folder.Join("bin"));
}

}  // namespace
