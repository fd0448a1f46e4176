#include "platform/system/file_rights.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <tuple>

namespace platform {
namespace {

constexpr const char* kAttribute = "system.posix_acl_access";
constexpr std::uint32_t kVersion = 2;
constexpr std::size_t kHeader = sizeof kVersion;
constexpr std::size_t kEntry = sizeof(AclEntry);
static_assert(kEntry == 8);
constexpr unsigned kReadAndWrite = 6;

std::uint16_t RightsOf(const Acl& acl, std::uint16_t tag) {
  for (const AclEntry& entry : acl) {
    if (entry.tag == tag) return entry.rights;
  }
  return 7;  // without a mask nothing is masked
}

void SetRights(Acl& acl, std::uint16_t tag, std::uint32_t id, std::uint16_t rights) {
  for (AclEntry& entry : acl) {
    if (entry.tag == tag && entry.id == id) {
      entry.rights = rights;
      return;
    }
  }
  acl.push_back({tag, rights, id});
}

bool IsMasked(const AclEntry& entry) {
  return entry.tag == kAclUser || entry.tag == kAclGroup || entry.tag == kAclNamedGroup;
}

bool AclOf(int descriptor, Acl& acl) {
  std::array<char, 65536> bytes;
  const ssize_t size = fgetxattr(descriptor, kAttribute, bytes.data(), bytes.size());
  return size > 0 && ReadAcl({bytes.data(), static_cast<std::size_t>(size)}, acl);
}

// Whether a user is of a group that may read and write, or everybody may.
bool MayUseWithoutList(const struct stat& file, uid_t user) {
  if ((file.st_mode & kReadAndWrite) == kReadAndWrite) return true;
  const passwd* const account = getpwuid(user);
  if (account == nullptr || (file.st_mode >> 3 & kReadAndWrite) != kReadAndWrite) return false;
  std::array<gid_t, 1024> groups;
  int count = static_cast<int>(groups.size());
  if (getgrouplist(account->pw_name, account->pw_gid, groups.data(), &count) < 0) return false;
  return std::find(groups.begin(), groups.begin() + count, file.st_gid) != groups.begin() + count;
}

}  // namespace

bool ReadAcl(std::string_view bytes, Acl& acl) {
  std::uint32_t version = 0;
  if (bytes.size() < kHeader || (bytes.size() - kHeader) % kEntry != 0) return false;
  std::memcpy(&version, bytes.data(), sizeof version);
  acl.resize((bytes.size() - kHeader) / kEntry);
  if (!acl.empty()) std::memcpy(acl.data(), bytes.data() + kHeader, acl.size() * kEntry);
  return version == kVersion;
}

std::string AclBytes(const Acl& acl) {
  std::string bytes(kHeader + acl.size() * kEntry, '\0');
  std::memcpy(bytes.data(), &kVersion, kHeader);
  if (!acl.empty()) std::memcpy(bytes.data() + kHeader, acl.data(), acl.size() * kEntry);
  return bytes;
}

Acl AclOfMode(unsigned mode) {
  const auto part = [mode](int shift) { return static_cast<std::uint16_t>(mode >> shift & 7U); };
  return {{kAclOwner, part(6), kAclNoId}, {kAclGroup, part(3), kAclNoId}, {kAclOthers, part(0), kAclNoId}};
}

Acl AclForOthersFile(const Acl& old, std::int64_t formerOwner, std::int64_t formerGroup) {
  // What the mask takes away is taken away here, so that a wider mask gives nobody more.
  Acl acl;
  const std::uint16_t mask = RightsOf(old, kAclMask);
  for (AclEntry entry : old) {
    if (entry.tag == kAclMask) continue;
    if (IsMasked(entry)) entry.rights &= mask;
    acl.push_back(entry);
  }
  if (formerOwner >= 0) {
    SetRights(acl, kAclUser, static_cast<std::uint32_t>(formerOwner), RightsOf(acl, kAclOwner));
  }
  if (formerGroup >= 0) {
    SetRights(acl, kAclNamedGroup, static_cast<std::uint32_t>(formerGroup), RightsOf(acl, kAclGroup));
    SetRights(acl, kAclGroup, kAclNoId, RightsOf(acl, kAclOthers));  // another group's people are others
  }
  std::uint16_t widest = 0;
  for (const AclEntry& entry : acl) {
    if (IsMasked(entry)) widest |= entry.rights;
  }
  if (acl.size() > 3) acl.push_back({kAclMask, widest, kAclNoId});
  std::sort(acl.begin(), acl.end(), [](const AclEntry& one, const AclEntry& other) {
    return std::tie(one.tag, one.id) < std::tie(other.tag, other.id);
  });
  return acl;
}

bool PassOnRights(int from, int to) {
  struct stat old = {};
  if (fstat(from, &old) != 0) return false;
  Acl acl;
  const bool listed = AclOf(from, acl);
  const unsigned mode = old.st_mode & 0777;
  const bool owned = fchown(to, old.st_uid, old.st_gid) == 0;
  const bool grouped = owned || fchown(to, static_cast<uid_t>(-1), old.st_gid) == 0;
  // The rights come after the owner, whose change takes some away; and no list that the folder gives its new
  // files stays.
  if (owned && !listed) fremovexattr(to, kAttribute);
  fchmod(to, grouped ? mode : (mode & 0707) | (mode & 07) << 3);
  if (owned && !listed) return true;

  if (!listed) acl = AclOfMode(mode);
  const std::string bytes = AclBytes(AclForOthersFile(acl, owned ? -1 : static_cast<std::int64_t>(old.st_uid),
                                                      grouped ? -1 : static_cast<std::int64_t>(old.st_gid)));
  if (fsetxattr(to, kAttribute, bytes.data(), bytes.size(), 0) == 0) return true;
  return !listed && grouped && MayUseWithoutList(old, old.st_uid);
}

}  // namespace platform
