#include "platform/system/lock_reach.h"

#include <linux/magic.h>
#include <sys/vfs.h>

#include <algorithm>
#include <array>
#include <string>

#include "platform/system/file.h"

namespace platform {
namespace {

constexpr std::size_t kLongestProcText = std::size_t{4} << 20;

// Those that <linux/magic.h> does not name.
constexpr std::int64_t kBcachefs = 0xca451a4e;
constexpr std::int64_t kExfat = 0x2011bab0;
constexpr std::int64_t kNtfs = 0x7366746e;
constexpr std::int64_t kZfs = 0x2fc12fc1;

constexpr std::array<std::int64_t, 12> kLocalDisks = {
    EXT4_SUPER_MAGIC, XFS_SUPER_MAGIC,   BTRFS_SUPER_MAGIC, TMPFS_MAGIC, RAMFS_MAGIC, OVERLAYFS_SUPER_MAGIC,
    F2FS_SUPER_MAGIC, MSDOS_SUPER_MAGIC, kBcachefs,         kExfat,      kNtfs,       kZfs};

// Takes what stands before the next `separator` off a text.
std::string_view TakePart(std::string_view& text, char separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

bool HasOption(std::string_view options, std::string_view wanted) {
  while (!options.empty()) {
    if (TakePart(options, ',') == wanted) return true;
  }
  return false;
}

bool HasAnyOption(const Mount& mount, std::string_view wanted) {
  return HasOption(mount.options, wanted) || HasOption(mount.superOptions, wanted);
}

}  // namespace

bool IsLocalDisk(std::int64_t magic) {
  return std::find(kLocalDisks.begin(), kLocalDisks.end(), magic) != kLocalDisks.end();
}

bool MountLocksReach(const Mount& mount) {
  constexpr std::array<std::string_view, 9> kLocal = {"fuseblk", "hfsplus", "iso9660",  "jfs", "minix",
                                                      "nilfs2",  "ntfs",    "reiserfs", "udf"};
  if (std::find(kLocal.begin(), kLocal.end(), mount.type) != kLocal.end()) return true;
  if (mount.type == "nfs" || mount.type == "nfs4") {
    return !HasAnyOption(mount, "nolock") && !HasAnyOption(mount, "local_lock=all") &&
           !HasAnyOption(mount, "local_lock=posix");
  }
  if (mount.type == "cifs" || mount.type == "smb3") return !HasAnyOption(mount, "nobrl");
  return false;
}

// "36 35 98:0 /root /mnt rw,noatime master:1 - nfs4 server:/dir rw,local_lock=none", with any number of words
// before the dash.
bool FindMount(std::string_view mountInfo, std::string_view id, Mount& mount) {
  while (!mountInfo.empty()) {
    std::string_view line = TakePart(mountInfo, '\n');
    if (TakePart(line, ' ') != id) continue;
    for (int word = 0; word < 4; ++word) TakePart(line, ' ');
    mount.options = TakePart(line, ' ');
    while (!line.empty() && TakePart(line, ' ') != "-") {
    }
    mount.type = TakePart(line, ' ');
    TakePart(line, ' ');
    mount.superOptions = TakePart(line, ' ');
    return true;
  }
  return false;
}

bool AskLocksReach(int descriptor) {
  struct statfs about = {};
  if (fstatfs(descriptor, &about) != 0) return false;
  if (IsLocalDisk(about.f_type)) return true;
  // The mount's number is asked of the descriptor: a path may have been mounted over, and some file systems
  // give their files other device numbers than their mounts.
  std::string text;
  std::string mounts;
  if (!ReadWholeFile("/proc/self/fdinfo/" + std::to_string(descriptor), kLongestProcText, text) ||
      !ReadWholeFile("/proc/self/mountinfo", kLongestProcText, mounts)) {
    return false;
  }
  std::string_view lines = text;
  while (!lines.empty()) {
    std::string_view line = TakePart(lines, '\n');
    if (TakePart(line, '\t') != "mnt_id:") continue;
    Mount mount;
    return FindMount(mounts, line, mount) && MountLocksReach(mount);
  }
  return false;
}

}  // namespace platform
