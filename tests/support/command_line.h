// Runs command lines of tempoline-cli in this process, or of the program itself in another one.
#pragma once

#include <string>
#include <vector>

#include "support/json.h"

namespace tests {

struct CommandResult {
  int code = -1;
  std::string output;
  std::string errors;
};

// The words of a line, which blanks keep apart.
std::vector<std::string> Words(const std::string& line);

// In this process, without a password from the environment.
CommandResult RunCli(const std::vector<std::string>& words);

// The program itself through the shell, its words quoted there: `TEMPOLINE_CLI + " list ..."`.
CommandResult RunShell(const std::string& line);

// What `list --format json` with these words prints. Fails the test when the command does.
Json ListRows(std::vector<std::string> words);

}  // namespace tests
