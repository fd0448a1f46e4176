#include "net/server_setup.h"

#include "core/events/account.h"
#include "core/store/file_messages.h"
#include "framework/notices.h"
#include "net/server_dialogs.h"
#include "resources/text_ids.h"

using core::CommandResult;

int ServerSetupCommand(core::RecordFile* calendar, ZarfWnd* owner) {
  const CommandResult allowed = calendar != nullptr ? core::CheckMaySetUp(*calendar) : CommandResult::kReader;
  if (allowed == CommandResult::kReader) {
    ShowInfoId(owner, text::kNoPermission);
    return 0;
  }
  if (allowed != CommandResult::kDone) {
    ShowInfo(owner, core::DescribeResult(*calendar, allowed));
    return 0;
  }
  if (core::IsServerPasswordSet() && AskServerPassword(owner) != 1) return 0;
  if (ServerSetupDialog().Run(owner) != 1) return 0;
  const CommandResult stamped = core::StampServerAddress(*calendar);
  std::string message = core::DescribeResult(*calendar, stamped);
  if (!core::IsMade(stamped)) message += "\r\nThe calendar did not get the event server's address.";
  if (!message.empty()) ShowInfo(owner, message);
  return 1;
}
