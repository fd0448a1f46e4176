#include "calendar/action_reports.h"

#include "core/store/file_messages.h"

using core::CommandResult;

bool MayBegin(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected) {
  if (session.File() == nullptr) return false;
  const CommandResult allowed = CheckMayChange(*session.File());
  if (allowed != CommandResult::kDone) ReportAndLook(session, host, allowed, "Nothing was changed.");
  return allowed == CommandResult::kDone && !selected.IsNone();
}

void Report(const core::CalendarSession& session, ActionHost& host, CommandResult result,
            const char* failed) {
  if (result == CommandResult::kCancelledEvent || result == CommandResult::kInternetEvent) host.Beep();
  std::string message = core::DescribeResult(*session.File(), result);
  if (result == CommandResult::kFailed) message.append("\r\n").append(failed);
  if (!message.empty()) host.Tell(message);
}

void ReportAndLook(core::CalendarSession& session, ActionHost& host, CommandResult result,
                   const char* failed) {
  const std::string news = result == CommandResult::kFailed ? session.LookAfterFile() : "";
  if (news.empty()) {
    Report(session, host, result, failed);
  } else {
    host.Tell(news + "\r\n" + failed);
  }
}

void Report(const core::CalendarSession& session, ActionHost& host, const core::EventOutcome& outcome,
            const char* failed) {
  if (outcome.message.empty()) {
    Report(session, host, outcome.result, failed);
  } else {
    host.Tell(IsMade(outcome.result) ? outcome.message : outcome.message + "\r\n" + failed);
  }
}

void ReportAndLook(core::CalendarSession& session, ActionHost& host, const core::EventOutcome& outcome,
                   const char* failed) {
  if (outcome.message.empty()) {
    ReportAndLook(session, host, outcome.result, failed);
  } else {
    Report(session, host, outcome, failed);
  }
}

bool IsFileLost(const core::RecordFile& file, CommandResult result) {
  return result == CommandResult::kFailed &&
         (file.LastFault() == core::FileFault::kReplaced || file.LastFault() == core::FileFault::kGone);
}
