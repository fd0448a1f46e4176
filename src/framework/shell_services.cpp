#include "framework/shell_services.h"

#include "core/calendar/new_calendar.h"
#include "core/store/file_messages.h"
#include "framework/notices.h"
#include "framework/zarf_wnd.h"
#include "platform/desktop/shell.h"
#include "platform/system/file.h"
#include "platform/system/program_folder.h"

namespace {

constexpr const char* kFolderTitle =
    "Please select a folder where program can save your new file and then click on Ok button.";

std::vector<std::string> Split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  while (!text.empty()) {
    const std::size_t end = text.find(separator);
    pieces.emplace_back(text.substr(0, end));
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  }
  return pieces;
}

std::string FolderOf(int choice) {
  if (choice == kInCurrentFolder) return ".";
  if (choice == kInProgramFolder) return platform::ProgramFolder();
  return core::WorksFolder();
}

// Over the window, or, when that is gone by then, over whichever is in front.
WhenNotOpened Tell(HWND window, const std::string& what) {
  return [window, what] {
    const HWND over = IsWindow(window) ? window : GetForegroundWindow();
    ShowInfo(ObjectFromHandle(over), what);
  };
}

void OpenOr(const WhenNotOpened& tell, const std::string& target) {
  if (!OpenOnDesktop(target, tell)) tell();
}

WhenNotOpened TellNotOpened(const ZarfWnd* owner, const std::string& target) {
  return Tell(owner != nullptr ? owner->Handle() : nullptr, core::Quoted(target) + " cannot be opened.");
}

}  // namespace

std::vector<FileFilter> ParseFileFilter(std::string_view filter) {
  std::vector<FileFilter> filters;
  if (filter.empty()) return filters;
  const std::vector<std::string> pieces = Split(filter, filter.back());
  for (std::size_t i = 0; i + 1 < pieces.size() && !pieces[i].empty(); i += 2) {
    const std::vector<std::string> patterns = Split(pieces[i + 1], ';');
    if (!patterns.empty()) filters.push_back({pieces[i], patterns});
  }
  return filters;
}

bool FileDialog(int mode, const char* filter, const char* defaultExtension, HWND owner, std::string& path,
                int folderChoice) {
  FileQuestion question;
  question.saving = mode != kFileDialogOpen;
  question.filters = ParseFileFilter(filter);
  question.defaultExtension = defaultExtension;
  question.folder = FolderOf(folderChoice);
  return AskForFile(owner, question, path);
}

bool BrowseFolder(HWND owner, std::string& path) {
  return AskForFolder(owner, kFolderTitle, path);
}

void OpenHelp(const char* fileName, bool) {
  const std::string name = std::string("Help/") + fileName;
  const std::string path = platform::SharedFilePath(name);
  if (platform::FileExists(path)) {
    OpenOr(Tell(GetForegroundWindow(), "No program here shows the help. Its pages lie in\r\n" +
                                           core::Quoted(path.substr(0, path.rfind('/'))) + "."),
           path);
    return;
  }
  ShowInfo(ObjectFromHandle(GetForegroundWindow()),
           "Help file '" + platform::ProgramFolder() + '/' + name + "'\r\ndoes not exist.");
}

void OpenOrTell(ZarfWnd* owner, const std::string& target) {
  OpenOr(TellNotOpened(owner, target), target);
}

void MailOrTell(ZarfWnd* owner, const std::string& address) {
  const WhenNotOpened tell = TellNotOpened(owner, "mailto:" + address);
  if (!OpenMail(address, tell)) tell();
}

void ShellOpen(const std::string& target) {
  OpenOnDesktop(target);
}

void ShellPrint(const std::string& file) {
  PrintFile(file);
}

void MailTo(const char* address) {
  OpenMail(address != nullptr ? address : "");
}
