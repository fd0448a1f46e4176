#include "calendar/file_commands.h"

#include "calendar/dialogs/new_file_dialog.h"
#include "calendar/dialogs/password_dialogs.h"
#include "core/calendar/new_calendar.h"
#include "core/store/compaction.h"
#include "core/store/file_messages.h"
#include "core/store/value_compare.h"
#include "framework/compaction_progress.h"
#include "framework/notices.h"
#include "framework/password_dialog.h"
#include "framework/shell_services.h"
#include "platform/desktop/application.h"
#include "platform/system/file.h"
#include "resources/text_ids.h"

namespace {

constexpr const char* kFilter = "Tempoline file (*.cld)|*.cld||";
constexpr const char* kExtension = "cld";

// Opens a calendar and notes it down for the next start, or tells why it was not opened.
void OpenAndRemember(core::CalendarSession& session, ZarfWnd* owner, const std::string& path,
                     const std::string& password) {
  std::string message;
  const bool opened = session.Open(path, password, false, message);
  if (!message.empty()) ShowInfo(owner, message);
  const std::string forgotten = opened ? core::RememberCalendar(path) : "";
  if (!forgotten.empty()) ShowInfo(owner, forgotten);
}

bool AskForCalendar(const ZarfWnd* owner, int mode, std::string& path) {
  return FileDialog(mode, kFilter, kExtension, owner->Handle(), path, kInWorksFolder);
}

// The open calendar; null, and a beep, when there is none.
core::RecordFile* OpenFileOf(const core::CalendarSession& session) {
  if (session.File() == nullptr) MessageBeep();
  return session.File();
}

bool IsSamePath(const std::string& left, const std::string& right) {
  return left.size() == right.size() && core::CompareText(left.data(), right.data(), left.size()) == 0;
}

constexpr const char* kCompactCounted =
    "\r\n\r\nIf nobody has, it is in order to compact it. Whoever has goes on with the new file.\r\nCompact "
    "it?";

void Tell(ZarfWnd* owner, const core::RepairOutcome& outcome) {
  if (!outcome.message.empty()) ShowInfo(owner, outcome.message);
}

// Has the passwords typed and typed again, until they are the same. False for Cancel.
bool AskForPasswords(ZarfWnd* owner, core::FilePasswords& passwords) {
  using Mode = NetworkPasswordsDialog::Mode;
  NetworkPasswordsDialog first(Mode::kSet, passwords);
  if (first.Run(owner) != 1) return false;
  for (;;) {
    NetworkPasswordsDialog again(Mode::kVerify);
    if (again.Run(owner) != 1) return false;
    passwords = again.Passwords();
    if (passwords == first.Passwords()) return true;
    ShowInfoId(owner, text::kPasswordsDiffer);
  }
}

}  // namespace

bool CreateAndOpen(core::CalendarSession& session, ZarfWnd* owner, const std::string& note) {
  NewFileDialog dialog(note);
  if (dialog.Run(owner) != 1) return false;
  OpenAndRemember(session, owner, dialog.Path(), "");
  return true;
}

void NewFileCommand(core::CalendarSession& session, ZarfWnd* owner) {
  CreateAndOpen(session, owner, "");
}

void OpenFileCommand(core::CalendarSession& session, ZarfWnd* owner) {
  std::string path;
  if (!AskForCalendar(owner, kFileDialogOpen, path)) return;
  std::string password;
  std::string message;
  if (core::AskFilePassword(path, AskOver(owner), password, message)) {
    OpenAndRemember(session, owner, path, password);
  } else {
    ShowInfo(owner, message);
  }
}

void NetworkPasswordsCommand(core::CalendarSession& session, ZarfWnd* owner) {
  core::RecordFile* const file = OpenFileOf(session);
  if (file == nullptr) return;
  core::FilePasswords passwords;
  core::CommandResult result = core::ReadPasswords(*file, passwords);
  if (result == core::CommandResult::kDone) {
    if (!AskForPasswords(owner, passwords)) return;
    result = core::StorePasswords(*file, passwords);
  }
  std::string message = core::DescribeResult(*file, result);
  if (result == core::CommandResult::kFailed) message += "\r\nThe passwords were not changed.";
  if (!message.empty()) ShowInfo(owner, message);
}

void SaveAsCommand(core::CalendarSession& session, ZarfWnd* owner) {
  core::RecordFile* const file = OpenFileOf(session);
  std::string target;
  if (file == nullptr || !AskForCalendar(owner, kFileDialogSave, target)) return;
  // Where the file has lost its name, saving gives it back.
  const bool there = file->PathState() != platform::FileAtPath::kGone;
  if (there && IsSamePath(target, platform::FullPath(file->Path()))) return;
  Tell(owner, core::SaveCopy(*file, target, ShowCompaction(owner)));
}

void CompactCommand(ZarfWnd* owner) {
  std::string path;
  if (!AskForCalendar(owner, kFileDialogOpen, path)) return;
  core::RepairOutcome outcome = core::RepairCheck(path, true, ShowCompaction(owner));
  if (outcome.counted) {
    if (!AskYesNo(owner, outcome.message + kCompactCounted)) return;
    outcome = core::CompactCounted(path, ShowCompaction(owner));
  }
  Tell(owner, outcome);
}
