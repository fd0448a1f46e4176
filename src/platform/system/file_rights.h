// Who may do what with a file that takes another one's place: owner, group, mode and access control list of
// the old one pass to it, so that nobody who shares the file is locked out.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// One line of an access control list, as the kernel keeps it in "system.posix_acl_access".
struct AclEntry {
  std::uint16_t tag;
  std::uint16_t rights;  // 4 read, 2 write, 1 execute
  std::uint32_t id;      // of a named user or group, else kAclNoId
  bool operator==(const AclEntry&) const = default;
};
using Acl = std::vector<AclEntry>;

inline constexpr std::uint16_t kAclOwner = 1;
inline constexpr std::uint16_t kAclUser = 2;
inline constexpr std::uint16_t kAclGroup = 4;
inline constexpr std::uint16_t kAclNamedGroup = 8;
inline constexpr std::uint16_t kAclMask = 16;
inline constexpr std::uint16_t kAclOthers = 32;
inline constexpr std::uint32_t kAclNoId = 0xffffffff;

// False when the bytes are none.
bool ReadAcl(std::string_view bytes, Acl& acl);
std::string AclBytes(const Acl& acl);

// The list of a file with these permission bits and no list of its own.
Acl AclOfMode(unsigned mode);

// The list that gives everybody what `old` gave them, in a file whose owner (or group) is another one: -1
// where it stayed the same, else the old one, who is named from here on.
Acl AclForOthersFile(const Acl& old, std::int64_t formerOwner, std::int64_t formerGroup);

// Gives the open file `to` the rights of the open file `from`. The system may refuse the owner and the group;
// they are then named in the list. False when the former owner, or the group, could then no longer read and
// write the file as before.
bool PassOnRights(int from, int to);

}  // namespace platform
