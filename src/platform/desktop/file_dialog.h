// The desktop's own dialogs that ask for a file or a folder. Paths are absolute, in the file system's
// encoding; other texts are UTF-8.
#pragma once

#include <string>
#include <vector>

#include "platform/desktop/types.h"

// One kind of file to choose from, as a list of patterns like "*.cld".
struct FileFilter {
  std::string description;
  std::vector<std::string> patterns;
  bool operator==(const FileFilter&) const = default;
};

struct FileQuestion {
  bool saving = false;              // asks before it overwrites; otherwise the file must exist
  std::vector<FileFilter> filters;  // the first is in force at first; none: all files
  // Appended to a name without one, without the dot; once the user has chosen a kind of file, that of its
  // first pattern. Empty: none.
  std::string defaultExtension;
  std::string folder;  // where it begins
};

// True with the chosen path; false, `path` untouched, when the user cancelled.
bool AskForFile(HWND owner, const FileQuestion& question, std::string& path);
// `path` is the folder shown at first; empty: the current one.
bool AskForFolder(HWND owner, const std::string& title, std::string& path);
