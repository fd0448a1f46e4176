#include "calendar/file_commands.h"

#include "calendar/calendar_pane.h"
#include "calendar/new_file_dialog.h"
#include "calendar/password_dialogs.h"
#include "core/compaction.h"
#include "core/file_messages.h"
#include "core/new_calendar.h"
#include "core/value_compare.h"
#include "framework/compaction_progress.h"
#include "framework/notices.h"
#include "framework/shell_services.h"
#include "platform/desktop/application.h"
#include "platform/system/file.h"

namespace {

constexpr int kPasswordsDifferText = 101;
constexpr int kNoPermissionText = 102;

constexpr const char* kFilter = "Tempoline file (*.cld)|*.cld||";
constexpr const char* kExtension = "cld";

// Opens a calendar and notes it down for the next start, or tells why it was not opened.
void OpenAndRemember(CalendarPane& pane, const std::string& path, const std::string& password) {
  std::string message;
  if (pane.OpenCalendar(path, password, false, message)) core::RememberCalendar(path);
  if (!message.empty()) ShowInfo(&pane, message);
}

bool AskForCalendar(CalendarPane& pane, int mode, std::string& path) {
  return FileDialog(mode, kFilter, kExtension, pane.Handle(), path, kInWorksFolder);
}

// The open calendar; null, and a beep, when there is none.
core::RecordFile* OpenCalendarOf(CalendarPane& pane) {
  if (pane.CalendarFile() == nullptr) MessageBeep();
  return pane.CalendarFile();
}

bool IsSamePath(const std::string& left, const std::string& right) {
  return left.size() == right.size() && core::CompareText(left.data(), right.data(), left.size()) == 0;
}

void Tell(CalendarPane& pane, const core::RepairOutcome& outcome) {
  if (!outcome.message.empty()) ShowInfo(&pane, outcome.message);
}

// Has the passwords typed and typed again, until they are the same. False for Cancel.
bool AskForPasswords(CalendarPane& pane, core::FilePasswords& passwords) {
  using Mode = NetworkPasswordsDialog::Mode;
  NetworkPasswordsDialog first(Mode::kSet, passwords);
  if (first.Run(&pane) != 1) return false;
  for (;;) {
    NetworkPasswordsDialog again(Mode::kVerify);
    if (again.Run(&pane) != 1) return false;
    passwords = again.Passwords();
    if (passwords == first.Passwords()) return true;
    ShowInfoId(&pane, kPasswordsDifferText);
  }
}

}  // namespace

core::PasswordPrompt AskOver(CalendarPane& pane) {
  return [&pane](const std::string& path, std::string& password) {
    PasswordDialog dialog(path);
    if (dialog.Run(&pane) != 1) return false;
    password = dialog.Password();
    return true;
  };
}

bool CreateAndOpen(CalendarPane& pane, const std::string& note) {
  NewFileDialog dialog(note);
  if (dialog.Run(&pane) != 1) return false;
  OpenAndRemember(pane, dialog.Path(), "");
  return true;
}

void NewFileCommand(CalendarPane& pane) {
  CreateAndOpen(pane, "");
}

void OpenFileCommand(CalendarPane& pane) {
  std::string path;
  if (!AskForCalendar(pane, kFileDialogOpen, path)) return;
  std::string password;
  std::string message;
  if (core::AskFilePassword(path, AskOver(pane), password, message)) {
    OpenAndRemember(pane, path, password);
  } else {
    ShowInfo(&pane, message);
  }
}

void NetworkPasswordsCommand(CalendarPane& pane) {
  core::RecordFile* const file = OpenCalendarOf(pane);
  if (file == nullptr) return;
  core::FilePasswords passwords;
  const core::Result read = core::ReadPasswords(*file, passwords);
  if (read == core::Result::kRefused) {
    ShowInfoId(&pane, kNoPermissionText);
    return;
  }
  if (read == core::Result::kDone && !AskForPasswords(pane, passwords)) return;
  if (read != core::Result::kDone || !core::StorePasswords(*file, passwords)) {
    ShowInfo(&pane, "Can't write to " + core::Quoted(file->Path()) + ".\r\nThe passwords were not changed.");
  }
}

void SaveAsCommand(CalendarPane& pane) {
  core::RecordFile* const file = OpenCalendarOf(pane);
  std::string target;
  if (file == nullptr || !AskForCalendar(pane, kFileDialogSave, target)) return;
  if (IsSamePath(target, platform::FullPath(file->Path()))) return;
  Tell(pane, core::SaveCopy(*file, target, ShowCompaction(&pane)));
}

void CompactCommand(CalendarPane& pane) {
  std::string path;
  if (AskForCalendar(pane, kFileDialogOpen, path)) {
    Tell(pane, core::RepairCheck(path, true, ShowCompaction(&pane)));
  }
}
