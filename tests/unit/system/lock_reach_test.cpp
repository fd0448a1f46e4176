#include "platform/system/lock_reach.h"

#include <gtest/gtest.h>

namespace {

using platform::FindMount;
using platform::Mount;
using platform::MountLocksReach;

constexpr std::string_view kMounts =
    "22 1 8:1 / / rw,relatime shared:1 - ext4 /dev/sda1 rw,errors=remount-ro\n"
    "36 22 0:31 / /home/a rw,nosuid - fuse.sshfs a@b:/c rw,user_id=0\n"
    "37 22 0:32 / /n rw,relatime shared:2 master:1 - nfs4 server:/dir rw,vers=4.2,local_lock=none\n"
    "137 22 0:33 / /v rw - virtiofs share rw";

TEST(LockReach, FollowsFromTheMount) {
  const struct {
    Mount mount;
    bool reach;
  } kCases[] = {
      {{"fuseblk", "rw", "rw,user_id=0"}, true},  // a disk of this machine
      {{"nfs", "rw", "rw,vers=3,local_lock=none"}, true},
      {{"nfs4", "rw", "rw,local_lock=flock"}, true},  // other locks than ours
      {{"nfs", "rw", "rw,nolock,local_lock=all"}, false},
      {{"nfs4", "rw,local_lock=posix", "rw"}, false},
      {{"cifs", "rw", "rw,vers=3.1.1,nobrlx"}, true},
      {{"smb3", "rw", "rw,nobrl"}, false},
      {{"fuse", "rw", "rw"}, false},
      {{"fuse.sshfs", "rw", "rw"}, false},
      {{"9p", "rw", "rw,trans=virtio"}, false},
      {{"virtiofs", "rw", "rw"}, false},
      {{"something.new", "rw", "rw"}, false},
  };
  for (const auto& one : kCases) EXPECT_EQ(MountLocksReach(one.mount), one.reach) << one.mount.type;
  EXPECT_TRUE(platform::IsLocalDisk(0xEF53));       // ext4
  EXPECT_FALSE(platform::IsLocalDisk(0x65735546));  // FUSE
}

TEST(LockReach, FindsAMountByItsNumber) {
  Mount mount;
  ASSERT_TRUE(FindMount(kMounts, "37", mount));
  EXPECT_EQ(mount.type, "nfs4");
  EXPECT_EQ(mount.options, "rw,relatime");
  EXPECT_EQ(mount.superOptions, "rw,vers=4.2,local_lock=none");
  ASSERT_TRUE(FindMount(kMounts, "137", mount));
  EXPECT_EQ(mount.type, "virtiofs");
  EXPECT_EQ(mount.superOptions, "rw");
  EXPECT_FALSE(FindMount(kMounts, "7", mount));
  EXPECT_FALSE(FindMount("", "37", mount));
}

}  // namespace
