// Starts other programs.
#pragma once

#include <string>

namespace platform {

// Starts the program in the file `path`, without arguments, on its own: it reads no input, outlives this
// process and is not waited for. False when there is no such program.
bool StartProgram(const std::string& path);

// Whether the program in the file `path` runs, as far as this user may look: a process of somebody else's
// does not count.
bool ProgramRuns(const std::string& path);

}  // namespace platform
