// The commands on whole files: new, share and compact.
#include "cli/calendar_access.h"
#include "cli/commands.h"
#include "core/calendar/new_calendar.h"
#include "core/events/sharing.h"
#include "core/store/compaction.h"
#include "core/store/file_messages.h"
#include "platform/system/file.h"

namespace cli {
namespace {

Outcome OfSharing(const std::string& path, const core::SharingOutcome& sharing) {
  if (sharing.shared && sharing.message.empty()) return {};
  return FailOn(path, sharing.shared ? kDone : kFile, sharing.message);
}

}  // namespace

Outcome NewCommand(const Arguments& arguments) {
  const std::string& path = arguments.file;
  if (arguments.Has("group")) {
    return OfSharing(path,
                     core::CreateSharedCalendar(path, arguments.Value("group"), arguments.Has("examples")));
  }
  const platform::FileResult made = core::CreateCalendar(path, arguments.Has("examples"));
  if (made == platform::FileResult::kDone) return {};
  const bool exists = made == platform::FileResult::kExists;
  return FailOn(path, kFile, exists ? "There is a file already." : core::CannotCreateText(made));
}

Outcome ShareCommand(const Arguments& arguments) {
  if (!arguments.Has("group")) return Fail(kUsage, "share needs --group; --help tells more");
  return OfSharing(arguments.file, core::ShareCalendar(arguments.file, arguments.Value("group")));
}

Outcome CompactCommand(const Arguments& arguments) {
  const std::string& path = arguments.file;
  if (!platform::FileExists(path)) {
    return FailOn(path, kFile, core::DescribeOpenError(path, core::OpenError::kMissing));
  }
  const core::RepairOutcome outcome =
      arguments.Has("force") ? core::CompactCounted(path) : core::RepairCheck(path, true);
  const std::string message = outcome.message.empty() ? "" : FailOn(path, kDone, outcome.message).message;
  if (outcome.clean) return {kDone, message};
  return {outcome.inUse ? kLocked : kFile, message};
}

}  // namespace cli
