// The words of the command line: which commands and options there are, what was given, and the help made from
// the same tables.
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/outcome.h"

namespace cli {

inline constexpr std::string_view kProgram = "tempoline-cli";

enum class Command {
  kNone,
  kInfo,
  kList,
  kAlarms,
  kAdd,
  kEdit,
  kMove,
  kCopy,
  kDelete,
  kCompact,
  kCheck,
  kNew,
  kShare,
  kContacts,
  kParticipants,
  kRegister,
  kExport,
  kReport,
  kImport
};

// What the user asked for. Options are known ones of the command, each with its value ("" for a switch).
struct Arguments {
  Command command = Command::kNone;  // kNone: only help or the version is wanted
  bool help = false;
  bool version = false;
  std::string action;                                       // of contacts, as given
  std::string file;                                         // a path, as given
  std::string id;                                           // of edit, move, copy and delete, as given
  std::string other;                                        // of export, report and import: the other file
  std::map<std::string, std::string, std::less<>> options;  // by name, without the dashes

  bool Has(std::string_view option) const { return options.contains(option); }
  // Empty for an option that was not given.
  const std::string& Value(std::string_view option) const;
};

// Takes the words after the program's name apart. Options may stand anywhere, as "--name value" or
// "--name=value"; "--" ends them. A kUsage outcome says which word is wrong.
Outcome ParseArguments(const std::vector<std::string>& words, Arguments& arguments);

// What --help prints: of one command, or for kNone of the program.
std::string HelpText(Command command);

// The names of all commands and, with their dashes, of all options.
std::vector<std::string> AllWords();

}  // namespace cli
