#include "store/two_mounts.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <iostream>
#include <vector>

namespace tests {
namespace {

bool Run(std::vector<std::string> words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t quiet;
  posix_spawn_file_actions_init(&quiet);
  posix_spawn_file_actions_addopen(&quiet, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t process = 0;
  int status = 1;
  const bool started = posix_spawnp(&process, arguments[0], &quiet, nullptr, arguments.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&quiet);
  return started && waitpid(process, &status, 0) == process && status == 0;
}

bool Unmount(const std::string& folder) {
  return Run({"fusermount3", "-u", folder}) || Run({"fusermount", "-u", folder}) ||
         Run({"fusermount3", "-u", "-z", folder});
}

}  // namespace

TwoMounts::TwoMounts(const std::string& folder) {
  int made = 0;
  for (std::string& mount : folders) {
    mount = points.Join(std::to_string(made));
    std::filesystem::create_directory(mount);
    if (!Run({"bindfs", "--no-allow-other", folder, mount})) break;
    ++made;
  }
  mounted = made == 2;
  if (mounted) return;
  if (made == 1) Unmount(folders[0]);
  folders = {folder, folder};
  std::cout << "FUSE is not to be had here: the workers share one folder and use no locks instead\n";
}

TwoMounts::~TwoMounts() {
  for (const std::string& mount : folders) {
    if (mounted) Unmount(mount);
  }
}

}  // namespace tests
