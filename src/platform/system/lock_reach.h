// Whether byte-range locks on a file are seen by everybody who may have it open, on whatever machine. On a
// local disk they are, and so they are on network file systems that carry them to the server. On others a
// lock is granted and means nothing to the next machine; what is not known here counts among those.
#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

// Asks the system about the file system that an open file or folder lies in.
bool AskLocksReach(int descriptor);

// Whether a file system with this number (statfs) is a disk of this machine alone.
bool IsLocalDisk(std::int64_t magic);

// What a line of /proc/self/mountinfo says. `options` are those of the mount, `superOptions` those of the
// file system, separated by commas.
struct Mount {
  std::string_view type;
  std::string_view options;
  std::string_view superOptions;
};

// Whether locks reach everybody in a mount of this type with these options.
bool MountLocksReach(const Mount& mount);

// Finds the mount with this number in the text of mountinfo. False when it has none.
bool FindMount(std::string_view mountInfo, std::string_view id, Mount& mount);

}  // namespace platform
