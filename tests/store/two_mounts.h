// One folder mounted twice through FUSE (bindfs): what is locked in one mount is not locked in the other, and
// each has caches of its own. Two such mounts are to a program what two machines with a shared folder are.
#pragma once

#include <array>
#include <string>

#include "support/temporary_folder.h"

namespace tests {

class TwoMounts {
 public:
  explicit TwoMounts(const std::string& folder);
  ~TwoMounts();
  TwoMounts(const TwoMounts&) = delete;
  TwoMounts& operator=(const TwoMounts&) = delete;

  // False where FUSE is not to be had; both are the folder itself then.
  bool AreMounted() const { return mounted; }
  const std::string& Folder(int which) const { return folders[static_cast<std::size_t>(which)]; }

 private:
  TemporaryFolder points;
  std::array<std::string, 2> folders;
  bool mounted = false;
};

}  // namespace tests
