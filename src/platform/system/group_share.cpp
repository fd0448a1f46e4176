#include "platform/system/group_share.h"

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "platform/system/descriptor.h"
#include "platform/system/file.h"

namespace platform {
namespace {

constexpr mode_t kFileRights = S_IRGRP | S_IWGRP;
constexpr mode_t kFolderRights = S_IRWXG | S_ISGID;

bool IsInSession(gid_t group) {
  std::array<gid_t, 1024> groups;
  const int count = getgroups(static_cast<int>(groups.size()), groups.data());
  return geteuid() == 0 || getegid() == group ||
         std::find(groups.begin(), groups.begin() + std::max(count, 0), group) != groups.begin() + count;
}

bool IsListed(gid_t group) {
  const passwd* const account = getpwuid(geteuid());
  if (account == nullptr) return false;
  std::array<gid_t, 1024> groups;
  int count = static_cast<int>(groups.size());
  if (getgrouplist(account->pw_name, account->pw_gid, groups.data(), &count) < 0) return false;
  return std::find(groups.begin(), groups.begin() + count, group) != groups.begin() + count;
}

// The rights that a file, or a folder, needs to be shared; 0 for anything else.
mode_t RightsFor(mode_t mode) {
  return S_ISDIR(mode) ? kFolderRights : S_ISREG(mode) ? kFileRights : 0;
}

}  // namespace

Membership FindGroup(const std::string& name, std::uint32_t& group) {
  const struct group* const found = getgrnam(name.c_str());
  if (found == nullptr) return Membership::kNoSuchGroup;
  group = found->gr_gid;
  if (IsInSession(found->gr_gid)) return Membership::kMember;
  return IsListed(group) ? Membership::kFromNextLogin : Membership::kNotMember;
}

bool GroupMayUse(const std::string& path, std::uint32_t group) {
  struct stat about = {};
  if (stat(path.c_str(), &about) != 0) return false;
  // In a sticky folder nobody replaces another one's file.
  const mode_t needed = RightsFor(about.st_mode) & ~static_cast<mode_t>(S_ISGID);
  const bool sticky = S_ISDIR(about.st_mode) && (about.st_mode & S_ISVTX) != 0;
  return needed != 0 && about.st_gid == group && (about.st_mode & needed) == needed && !sticky;
}

GroupRights GiveToGroup(const std::string& path, std::uint32_t group) {
  // One descriptor for all, so that what is looked at is what is given.
  const Descriptor opened(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat about = {};
  if (!opened.IsOpen() || fstat(opened.Number(), &about) != 0) {
    return errno == ENOENT ? GroupRights::kMissing : GroupRights::kFailed;
  }
  const mode_t rights = RightsFor(about.st_mode);
  if (rights == 0) return GroupRights::kFailed;
  if (geteuid() != 0 && about.st_uid != geteuid()) return GroupRights::kNotOwner;
  // The owner stays; and the mode comes second, because a change of the group takes rights away.
  const mode_t sticky = S_ISDIR(about.st_mode) ? S_ISVTX : 0;
  const bool given = (about.st_gid == group || fchown(opened.Number(), static_cast<uid_t>(-1), group) == 0) &&
                     fchmod(opened.Number(), ((about.st_mode & 07777) | rights) & ~sticky) == 0;
  return given && GroupMayUse(path, group) ? GroupRights::kGiven : GroupRights::kFailed;
}

GroupRights MakeGroupFolder(const std::string& path, std::uint32_t group) {
  if (mkdir(path.c_str(), 0777) != 0) return GroupRights::kFailed;
  const GroupRights given = GiveToGroup(path, group);
  if (given != GroupRights::kGiven) rmdir(path.c_str());
  return given;
}

std::string FirstClosedFolder(const std::string& path, std::uint32_t group) {
  const std::string full = FullPath(ResolvedPath(path));
  for (std::size_t end = full.find('/', 1); end != std::string::npos; end = full.find('/', end + 1)) {
    std::string folder = full.substr(0, end);
    struct stat about = {};
    if (stat(folder.c_str(), &about) != 0) continue;
    const mode_t pass = about.st_gid == group ? S_IXGRP : S_IXOTH;
    if ((about.st_mode & pass) == 0) return folder;
  }
  return "";
}

}  // namespace platform
