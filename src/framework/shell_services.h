// What windows ask of the desktop around them: files and folders to be chosen, help, and opening, printing
// and mailing with other programs. Paths are in the file system's encoding, other texts UTF-8.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/desktop/file_dialog.h"

class ZarfWnd;

constexpr int kFileDialogOpen = 1;  // the file must exist
constexpr int kFileDialogSave = 0;  // asks before it overwrites

// Where a file dialog begins.
constexpr int kInCurrentFolder = -1;
constexpr int kInProgramFolder = 0;
constexpr int kInWorksFolder = 1;  // the folder of calendars, made if missing

// Asks for a file. `filter` lists descriptions and patterns, "Tempoline file (*.cld)|*.cld||": its last
// character is the separator, and patterns of one kind stand apart by semicolons. `defaultExtension`, without
// the dot, is given to a name that has none, as long as the user chooses no other kind. True with the path;
// false, `path` untouched, when cancelled.
bool FileDialog(int mode, const char* filter, const char* defaultExtension, HWND owner, std::string& path,
                int folderChoice);
// The kinds of files in such a filter; an incomplete one at the end is left out.
std::vector<FileFilter> ParseFileFilter(std::string_view filter);
// Asks for a folder, beginning with the one in `path` if it is not empty.
bool BrowseFolder(HWND owner, std::string& path);

// Opens a page of the help folder, or says that it is missing or, where nothing shows it, where it lies.
// There is no viewer of the program's own: with and without useBrowser it is the desktop that shows it.
void OpenHelp(const char* fileName, bool useBrowser);

// A file, folder or address that a record holds, with whatever the desktop opens it with; a new message to an
// address. Where nothing opens it, the user is told so over `owner`, at once or as soon as the program that
// was to open it says so.
void OpenOrTell(ZarfWnd* owner, const std::string& target);
void MailOrTell(ZarfWnd* owner, const std::string& address);

// The same, in silence.
void ShellOpen(const std::string& target);
void ShellPrint(const std::string& file);
// A new message to an address; to nobody for null.
void MailTo(const char* address);
