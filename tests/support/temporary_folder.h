// A folder for one test, gone with everything in it when the test ends.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

namespace tests {

// The rights of a file, 0..07777; 0 when there is none.
inline unsigned ModeOf(const std::string& path) {
  struct stat about = {};
  return stat(path.c_str(), &about) == 0 ? about.st_mode & 07777 : 0;
}

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "daybrix-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
      std::perror("temporary folder");
      std::abort();
    }
    path = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& Path() const { return path; }

  // The full path of something in the folder.
  std::string Join(std::string_view name) const { return path + '/' + std::string(name); }

  // Puts a file with these bytes into the folder and answers its full path.
  std::string Write(std::string_view name, std::string_view bytes) const {
    std::string file = Join(name);
    std::ofstream(file, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file;
  }

  // The bytes of a file in the folder; empty when there is none.
  std::string Read(std::string_view name) const {
    std::ifstream file(Join(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  // How many files and folders lie directly in it.
  std::size_t Count() const {
    const std::filesystem::directory_iterator all(path);
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
  }

 private:
  std::string path;
};

}  // namespace tests
