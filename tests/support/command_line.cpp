#include "support/command_line.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <sstream>

#include "cli/cli.h"
#include "support/temporary_folder.h"

namespace tests {

std::vector<std::string> Words(const std::string& line) {
  std::istringstream stream(line);
  std::vector<std::string> words;
  for (std::string word; std::getline(stream, word, ' ');) words.push_back(word);
  return words;
}

CommandResult RunCli(const std::vector<std::string>& words) {
  unsetenv("TEMPOLINE_PASSWORD");
  CommandResult result;
  const auto into = [](std::string& text) {
    return [&text](std::string_view bytes) {
      text += bytes;
      return true;
    };
  };
  result.code = cli::RunCommandLine(words, into(result.output), into(result.errors));
  return result;
}

CommandResult RunShell(const std::string& line) {
  const TemporaryFolder folder;
  CommandResult result;
  const int status =
      std::system(("{ " + line + "; } 2>" + folder.Join("errors") + " >" + folder.Join("output")).c_str());
  result.code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  result.output = folder.Read("output");
  result.errors = folder.Read("errors");
  return result;
}

Json ListRows(std::vector<std::string> words) {
  words.insert(words.begin(), "list");
  words.insert(words.end(), {"--format", "json"});
  const CommandResult result = RunCli(words);
  EXPECT_EQ(result.code, 0) << result.errors;
  return Json::Parse(result.output.empty() ? "[]" : result.output);
}

}  // namespace tests
