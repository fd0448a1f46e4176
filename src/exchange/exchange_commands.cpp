#include "exchange/exchange_commands.h"

#include "core/calendar/appointment_commands.h"
#include "core/exchange/ical_writer.h"
#include "core/ini_file.h"
#include "core/store/file_messages.h"
#include "exchange/export_dialog.h"
#include "exchange/ical_import.h"
#include "exchange/import_wizard.h"
#include "exchange/report_dialog.h"
#include "framework/notices.h"
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

// Adds what the wizard was told to.
Imported ImportLines(core::RecordFile& file, ZarfWnd* owner, ImportWizard& wizard) {
  const core::ImportResult result =
      UnderProgress(owner, wizard.Path(), [&](const core::ExchangeProgress& progress) {
        return core::ImportFile(file, wizard.Reader(), wizard.Map(), progress);
      });
  return {core::DescribeImport(file, result), result.added != 0, result.result};
}

}  // namespace

void ExportCommand(core::CalendarSession& session, ZarfWnd* owner, ExchangeChoices& choices) {
  if (OpenFileOf(session) == nullptr) return;
  ExportDialog dialog(choices, session.CurrentDate(), LastPath(kExportKey));
  if (!dialog.Run(owner) || dialog.Path().empty()) return;
  BeginWaitCursor();
  core::ExchangeOptions options = dialog.Options();
  if (core::IsIcalName(dialog.Path())) options.mode = core::ExchangeMode::kIcal;
  const core::WriteResult result = core::WriteAppointments(*session.File(), options, dialog.Path());
  EndWaitCursor();
  // Users know the last line; the one before it tells them when there is no whole file all the same.
  std::string problem = result.message.empty() ? "" : result.message + "\r\n";
  if (result.dayless != 0) problem += core::DescribeDayless(result) + "\r\n";
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
  const Imported imported = core::IsIcalName(wizard.Path()) ? ImportIcal(*file, owner, wizard.Path())
                                                            : ImportLines(*file, owner, wizard);
  if (imported.message.empty()) return;
  if (imported.changed) session.RecordsChanged();
  // Another file may have taken the calendar's place meanwhile.
  std::string news = core::IsMade(imported.result) ? "" : session.LookAfterFile();
  if (!news.empty()) news += "\r\n";
  ShowInfo(owner, news + forgotten + imported.message);
}
