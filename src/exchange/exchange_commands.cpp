#include "exchange/exchange_commands.h"

#include "core/ini_file.h"
#include "core/store/file_messages.h"
#include "exchange/export_dialog.h"
#include "exchange/report_dialog.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "platform/desktop/application.h"

namespace {

constexpr const char* kSection = "Preference";
constexpr const char* kExportKey = "ExportFile";

constexpr const char* kSuccess = "Operation successful.";

// Notes a path down for the next time; what to tell the user where that fails, with its line end.
std::string Remember(const char* key, const std::string& path) {
  const core::IniFile settings;
  if (settings.WriteString(kSection, key, path)) return "";
  return "Can't write to " + core::Quoted(settings.Path()) +
         ".\r\nThe next time will not know this path.\r\n";
}

// The open calendar; null, and a beep, when there is none.
core::RecordFile* OpenFileOf(const core::CalendarSession& session) {
  if (session.File() == nullptr) MessageBeep();
  return session.File();
}

}  // namespace

void ExportCommand(core::CalendarSession& session, ZarfWnd* owner, ExchangeChoices& choices) {
  if (OpenFileOf(session) == nullptr) return;
  std::string lastPath;
  core::IniFile().ReadString(kSection, kExportKey, lastPath);
  ExportDialog dialog(choices, session.CurrentDate(), lastPath);
  if (!dialog.Run(owner) || dialog.Path().empty()) return;
  BeginWaitCursor();
  const core::WriteResult result = core::WriteAppointments(*session.File(), dialog.Options(), dialog.Path());
  EndWaitCursor();
  // Users know the last line; the one before it tells them when there is no whole file all the same.
  const std::string problem = result.message.empty() ? "" : result.message + "\r\n";
  ShowInfo(owner, problem + Remember(kExportKey, dialog.Path()) + kSuccess);
}

void ReportCommand(core::CalendarSession& session, ZarfWnd* owner, ExchangeChoices& choices,
                   std::optional<std::uint64_t> selected) {
  if (OpenFileOf(session) == nullptr) return;
  ReportDialog(*session.File(), choices, session.CurrentDate(), selected).Run(owner);
}
