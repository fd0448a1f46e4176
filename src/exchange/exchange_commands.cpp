#include "exchange/exchange_commands.h"

#include "core/calendar/appointment_commands.h"
#include "core/ini_file.h"
#include "core/store/file_messages.h"
#include "exchange/export_dialog.h"
#include "exchange/import_wizard.h"
#include "exchange/report_dialog.h"
#include "framework/notices.h"
#include "framework/progress_window.h"
#include "framework/services.h"
#include "platform/desktop/application.h"

namespace {

constexpr const char* kSection = "Preference";
constexpr const char* kExportKey = "ExportFile";
constexpr const char* kImportKey = "ImportFile";

constexpr const char* kSuccess = "Operation successful.";

// Notes a path down for the next time; what to tell the user where that fails, with its line end.
std::string Remember(const char* key, const std::string& path) {
  const core::IniFile settings;
  if (settings.WriteString(kSection, key, path)) return "";
  return "Can't write to " + core::Quoted(settings.Path()) +
         ".\r\nThe next time will not know this path.\r\n";
}

std::string LastPath(const char* key) {
  std::string path;
  core::IniFile().ReadString(kSection, key, path);
  return path;
}

// The open calendar; null, and a beep, when there is none.
core::RecordFile* OpenFileOf(const core::CalendarSession& session) {
  if (session.File() == nullptr) MessageBeep();
  return session.File();
}

// Adds what the wizard was told to, under a window that shows how far it is.
core::ImportResult Import(core::RecordFile& file, ZarfWnd* owner, ImportWizard& wizard) {
  ProgressWindow progress;
  progress.BeginCancellable(owner, "Import...", wizard.Path());
  BeginWaitCursor();
  const core::ImportResult result = core::ImportFile(
      file, wizard.Reader(), wizard.Map(),
      [&progress](std::int64_t done, std::int64_t whole) { return progress.Advance(done, whole); });
  EndWaitCursor();
  return result;
}

}  // namespace

void ExportCommand(core::CalendarSession& session, ZarfWnd* owner, ExchangeChoices& choices) {
  if (OpenFileOf(session) == nullptr) return;
  ExportDialog dialog(choices, session.CurrentDate(), LastPath(kExportKey));
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

void ImportCommand(core::CalendarSession& session, ZarfWnd* owner) {
  core::RecordFile* const file = OpenFileOf(session);
  if (file == nullptr) return;
  const core::CommandResult allowed = core::CheckMayChange(*file);
  if (allowed != core::CommandResult::kDone) {
    ShowInfo(owner, core::DescribeResult(*file, allowed));
    return;
  }
  ImportWizard wizard(*file, LastPath(kImportKey));
  if (!wizard.Run(owner)) return;
  const std::string forgotten = Remember(kImportKey, wizard.Path());
  const core::ImportResult result = Import(*file, owner, wizard);
  std::string message = forgotten + core::DescribeImport(*file, result);
  if (result.added != 0) session.RecordsChanged();
  // Another file may have taken the calendar's place meanwhile.
  const std::string news = core::IsMade(result.result) ? "" : session.LookAfterFile();
  if (!news.empty()) message = news + "\r\n" + message;
  ShowInfo(owner, message);
}
