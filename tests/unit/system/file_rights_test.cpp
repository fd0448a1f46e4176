#include "platform/system/file_rights.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include "platform/system/file.h"
#include "support/child_process.h"
#include "support/temporary_folder.h"

namespace {

using platform::Acl;
using platform::AclForOthersFile;
using platform::AclOfMode;

constexpr std::uint32_t kNone = platform::kAclNoId;

TEST(FileRights, NameWhoDoesNotOwnTheFileAnyMore) {
  const Acl listed = {{1, 6, kNone}, {2, 7, 30}, {4, 6, kNone}, {16, 4, kNone}, {32, 0, kNone}};
  const struct {
    const char* what;
    Acl old;
    std::int64_t owner;
    std::int64_t group;
    Acl expected;
  } kCases[] = {
      {"nobody changed", AclOfMode(0640), -1, -1, AclOfMode(0640)},
      {"owner",
       AclOfMode(0664),
       20,
       -1,
       {{1, 6, kNone}, {2, 6, 20}, {4, 6, kNone}, {16, 6, kNone}, {32, 4, kNone}}},
      {"group: another group's people are others",
       AclOfMode(0664),
       -1,
       9,
       {{1, 6, kNone}, {4, 4, kNone}, {8, 6, 9}, {16, 6, kNone}, {32, 4, kNone}}},
      {"a mask takes away as before, and the named are in order",
       listed,
       20,
       -1,
       {{1, 6, kNone}, {2, 6, 20}, {2, 4, 30}, {4, 4, kNone}, {16, 6, kNone}, {32, 0, kNone}}},
  };
  for (const auto& one : kCases) {
    EXPECT_EQ(AclForOthersFile(one.old, one.owner, one.group), one.expected) << one.what;
    Acl read;
    ASSERT_TRUE(platform::ReadAcl(platform::AclBytes(one.expected), read));
    EXPECT_EQ(read, one.expected);
  }
  Acl none;
  EXPECT_FALSE(platform::ReadAcl("", none));
  EXPECT_FALSE(platform::ReadAcl(std::string(7, 2), none));
}

// A colleague whom the list lets write replaces the file; its owner goes on using it.
TEST(FileRights, StayWithTheFormerOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can act for two users";
  constexpr uid_t kOwner = 1234;
  constexpr uid_t kNobody = 65534;
  const tests::TemporaryFolder folder;
  const std::string path = folder.Write("a", "old");
  ASSERT_EQ(chmod(folder.Path().c_str(), 0777), 0);
  ASSERT_EQ(chown(path.c_str(), kOwner, kOwner), 0);
  const std::string list =
      platform::AclBytes({{1, 6, kNone}, {2, 6, kNobody}, {4, 4, kNone}, {16, 6, kNone}, {32, 0, kNone}});
  if (setxattr(path.c_str(), "system.posix_acl_access", list.data(), list.size(), 0) != 0) {
    GTEST_SKIP() << "no access control lists here";
  }
  EXPECT_EQ(tests::RunUnprivileged([&] { return platform::ReplaceFile(path, "new", 3) ? 1 : 0; }), 1);
  struct stat about = {};
  ASSERT_EQ(stat(path.c_str(), &about), 0);
  EXPECT_EQ(about.st_uid, kNobody);
  EXPECT_EQ(about.st_mode & 07, 0U);
  tests::ChildProcess owner([&](const auto&) {
    if (setresgid(kOwner, kOwner, kOwner) != 0 || setresuid(kOwner, kOwner, kOwner) != 0) return 2;
    return access(path.c_str(), R_OK | W_OK) == 0 ? 0 : 1;
  });
  EXPECT_EQ(owner.ExitCode(), 0);
}

}  // namespace
