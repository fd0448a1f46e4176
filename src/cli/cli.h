// The program for terminals, scripts and cron, without its main: runs one command line.
#pragma once

#include <string>
#include <vector>

#include "cli/output.h"

namespace cli {

// Runs the command that the words after the program's name tell, with what it prints going to `output` and
// one line for each error or notice to `errors`. Answers the exit code (cli/outcome.h).
int RunCommandLine(const std::vector<std::string>& words, const Sink& output, const Sink& errors);

}  // namespace cli
