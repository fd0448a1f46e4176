// Files and folders that the people of one group share: who is in a group, and what a group may do.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

enum class Membership {
  kMember,
  kNoSuchGroup,
  kNotMember,
  kFromNextLogin,  // the user was put into it after this session began
};

// Looks a group up by its name, and whether this process may give its files to it. `group` is its number,
// also where the user is not in it.
Membership FindGroup(const std::string& name, std::uint32_t& group);

enum class GroupRights { kGiven, kMissing, kNotOwner, kFailed };

// Whether the group may read and write the file, or work in the folder and replace what lies there.
bool GroupMayUse(const std::string& path, std::uint32_t group);

// Gives a file or a folder to the group, and lets it use it (GroupMayUse); what else may be done stays. What
// is made in the folder from then on is the group's. Only its owner can do that.
GroupRights GiveToGroup(const std::string& path, std::uint32_t group);

// Makes a folder that the group may use. kFailed also where there is no folder above it, or it exists.
GroupRights MakeGroupFolder(const std::string& path, std::uint32_t group);

// The first folder on the way to a path that lets nobody of the group pass; empty when there is none.
std::string FirstClosedFolder(const std::string& path, std::uint32_t group);

}  // namespace platform
