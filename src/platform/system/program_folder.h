// Where the program's own files lie. Paths are absolute, without a trailing slash, in the file system's
// encoding.
#pragma once

#include <string>

namespace platform {

// The full path of the running executable.
std::string ExecutablePath();

// The executable's file name without folder and extension, e.g. "tempoline".
std::string ExecutableBaseName();

// Whether the program was put where `cmake --install` or a package puts it: the installed share folder below
// has its skins.
bool IsInstalled();

// The folder for what is read and written: settings, contacts, the "works" folder. DAYBRIX_FOLDER if set
// (made if missing), else the executable's folder, or $XDG_DATA_HOME/daybrix (~/.local/share/daybrix), which
// is made if missing, where the executable's folder cannot be written or the program is installed. Decided at
// the first call of the process.
std::string ProgramFolder();

// The user's folder for what programs keep and tell the desktop: $XDG_DATA_HOME, ~/.local/share without it.
// Need not exist.
std::string UserDataFolder();

// The full path of a file or folder that is only read (sounds, skins, help): in ProgramFolder() if it is
// there, else beside the executable, else in the installed share folder (as a rule <executable's
// folder>/../share/daybrix). It need not exist.
std::string SharedFilePath(const std::string& name);

}  // namespace platform
