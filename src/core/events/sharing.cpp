#include "core/events/sharing.h"

#include <algorithm>

#include "core/calendar/new_calendar.h"
#include "core/events/participant.h"
#include "core/store/file_messages.h"
#include "core/store/record_file.h"
#include "platform/system/file.h"
#include "platform/system/group_share.h"

namespace core {
namespace {

using platform::GroupRights;
using platform::Membership;

// Empty for kMember.
std::string WhyNotMember(Membership membership, const std::string& group) {
  switch (membership) {
    case Membership::kMember:
      break;
    case Membership::kNoSuchGroup:
      return "There is no group " + Quoted(group) + ".";
    case Membership::kNotMember:
      return "You are not in the group " + Quoted(group) + ".";
    case Membership::kFromNextLogin:
      return "You are in the group " + Quoted(group) + " from your next login on.";
  }
  return "";
}

// Empty for kGiven.
std::string WhyNotGiven(GroupRights given, const std::string& path) {
  switch (given) {
    case GroupRights::kGiven:
      break;
    case GroupRights::kMissing:
      return DescribeOpenError(path, OpenError::kMissing);
    case GroupRights::kNotOwner:
      return Quoted(path) + " belongs to another user, who alone can share it.";
    case GroupRights::kFailed:
      return "The rights of " + Quoted(path) + " cannot be changed.";
  }
  return "";
}

std::string FolderOf(const std::string& path) {
  const std::string full = platform::FullPath(platform::ResolvedPath(path));
  return full.substr(0, std::max<std::size_t>(full.rfind('/'), 1));
}

// With what compactions keep beside them: "team.cld.damaged.1".
bool HoldsCalendarsAlone(const std::string& folder) {
  const std::vector<std::string> names = platform::ListFolder(folder);
  return std::all_of(names.begin(), names.end(),
                     [](const std::string& name) { return name.find(".cld") != std::string::npos; });
}

std::string ShareFolder(const std::string& folder, std::uint32_t group) {
  if (platform::GroupMayUse(folder, group)) return "";
  if (!HoldsCalendarsAlone(folder)) {
    return "Other files lie in " + Quoted(folder) +
           ", which the group could take away. Put the calendar into a folder of its own.";
  }
  return WhyNotGiven(platform::GiveToGroup(folder, group), folder);
}

SharingOutcome ShareFile(const std::string& path, std::uint32_t group) {
  if (!platform::GroupMayUse(path, group)) {
    const std::string why = WhyNotGiven(platform::GiveToGroup(path, group), path);
    if (!why.empty()) return {false, why};
  }
  const std::string closed = platform::FirstClosedFolder(path, group);
  if (closed.empty()) return {true, ""};
  return {true, Quoted(closed) + " is closed to the group, which cannot get to the calendar."};
}

std::string WhyNoCalendar(const std::string& path) {
  const RecordFile file(path, "", OpenMode::kReadOnly);
  if (file.OpenFailed()) return DescribeOpenError(path, file.LastOpenError());
  return file.SlotSize() == kCalendarKind.slotSize ? "" : CannotOpenText(path, "It is not a calendar.");
}

}  // namespace

SharingOutcome ShareCalendar(const std::string& path, const std::string& group) {
  std::uint32_t number = 0;
  std::string why = WhyNotMember(platform::FindGroup(group, number), group);
  if (why.empty()) why = WhyNoCalendar(path);
  if (why.empty()) why = ShareFolder(FolderOf(path), number);
  // Before the calendar, so that a calendar which is the group's has all that belongs to it.
  const std::string participants = ParticipantStorePath(path);
  if (why.empty() && platform::FileExists(participants)) {
    const SharingOutcome given = ShareFile(participants, number);
    if (!given.shared) why = given.message;
  }
  if (!why.empty()) return {false, why};
  return ShareFile(path, number);
}

SharingOutcome CreateSharedCalendar(const std::string& path, const std::string& group, bool withExamples) {
  std::uint32_t number = 0;
  std::string why = WhyNotMember(platform::FindGroup(group, number), group);
  if (!why.empty()) return {false, why};
  if (platform::FileExists(path)) return {false, "There is a file already."};
  const std::string folder = FolderOf(path);
  if (platform::FileExists(folder)) {
    why = ShareFolder(folder, number);
  } else {
    why = WhyNotGiven(platform::MakeGroupFolder(folder, number), folder);
  }
  if (!why.empty()) return {false, why};
  const platform::FileResult made = CreateCalendar(path, withExamples);
  if (made != platform::FileResult::kDone) return {false, CannotCreateText(made)};
  return ShareFile(path, number);
}

}  // namespace core
