#include "cli/arguments.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "cli/table.h"

namespace cli {
namespace {

// Where the summaries begin in the help.
constexpr std::size_t kCommandColumn = 25;
constexpr std::size_t kSummaryColumn = 24;

struct CommandInfo {
  Command command;
  std::string_view name;
  std::string_view operands;
  std::string_view summary;
};

constexpr CommandInfo kCommands[] = {
    {Command::kInfo, "info", "FILE", "say what a file is and what it holds"},
    {Command::kList, "list", "FILE", "list appointments, of days or all"},
    {Command::kAlarms, "alarms", "FILE", "tell which alarms are due and which rings next"},
    {Command::kAdd, "add", "FILE", "add an appointment and print its id"},
    {Command::kEdit, "edit", "FILE ID", "change an appointment"},
    {Command::kMove, "move", "FILE ID", "move an appointment to another day"},
    {Command::kCopy, "copy", "FILE ID", "copy an appointment to a day and print the copy's id"},
    {Command::kDelete, "delete", "FILE ID", "delete an appointment"},
    {Command::kCompact, "compact", "FILE", "rewrite a file without its free slots, and repair it"},
    {Command::kCheck, "check", "FILE", "look through a file for what is wrong; changes nothing"},
    {Command::kNew, "new", "FILE", "make a new calendar"},
    {Command::kShare, "share", "FILE", "let a group of users work on a calendar"},
    {Command::kContacts, "contacts", "ACTION [ID]", "list, add, edit or delete contacts of the address book"},
    {Command::kParticipants, "participants", "FILE [ID]", "list the participants of all events, or of one"},
    {Command::kExport, "export", "FILE OUT",
     "write appointments to a file, as lines or iCalendar; - is the output"},
    {Command::kReport, "report", "FILE [OUT]", "write appointments as a text to read"},
    {Command::kImport, "import", "FILE IN",
     "take appointments from a file of lines or iCalendar; - is the input"},
    {Command::kRegister, "register", "", "register on the event server"},
};

// Sets of commands, a bit for each.
constexpr unsigned In(Command command) {
  return 1U << static_cast<unsigned>(command);
}
constexpr unsigned kListing = In(Command::kList);
constexpr unsigned kContacting = In(Command::kContacts);
constexpr unsigned kAlarms = In(Command::kAlarms);
constexpr unsigned kShowing =
    kListing | kAlarms | In(Command::kInfo) | In(Command::kCheck) | kContacting | In(Command::kParticipants);
constexpr unsigned kWriting = In(Command::kAdd) | In(Command::kEdit);
constexpr unsigned kMoving = In(Command::kMove) | In(Command::kCopy);
constexpr unsigned kNaming = In(Command::kEdit) | In(Command::kDelete) | kMoving;
constexpr unsigned kReporting = In(Command::kReport);
constexpr unsigned kExporting = In(Command::kExport) | kReporting;
constexpr unsigned kImporting = In(Command::kImport);
constexpr unsigned kGuarded = kExporting | kImporting | kListing | kAlarms | kWriting | kNaming |
                              In(Command::kInfo) | kContacting | In(Command::kParticipants);

struct OptionInfo {
  std::string_view name;
  std::string_view value;  // what stands for the value in the help; empty for a switch
  unsigned commands;
  std::string_view summary;
};

constexpr OptionInfo kOptions[] = {
    {"day", "D", kListing, "the appointments of one day, YYYY-MM-DD"},
    {"from", "D", kListing, "with --to: those of each day from D"},
    {"to", "D", kListing, "with --from: to D, included"},
    {"month", "M", kListing, "a month, YYYY-MM; as text a grid of its days"},
    {"week", "D", kListing, "the week of a day, Monday to Sunday; as text a grid"},
    {"all", "", kListing, "all records, each once, with its own date"},
    {"find", "TEXT", kListing, "only those with TEXT in the subject or the notes"},
    {"category", "NAME", kListing, "only those of a category"},
    {"at", "MOMENT", kAlarms, "not now but at YYYY-MM-DDTHH:MM"},
    {"from", "D", kExporting, "with --to: only those from D"},
    {"to", "D", kExporting, "with --from: to D, included"},
    {"subject", "TEXT", kExporting, "only those with TEXT in the subject"},
    {"id", "ID", kReporting, "only this appointment"},
    {"header", "H", kImporting, "yes or no: whether the first line holds names; yes if not given"},
    {"separator", "S", kImporting, "comma or tab; else the first of both that comes"},
    {"quote", "Q", kImporting, "yes or no; else yes when the file begins with a quote"},
    {"map", "NAMES", kImporting, "the fields of the columns, with commas between them; - for none"},
    {"zone", "Z", kImporting,
     "of iCalendar: the time zone of the calendar, Area/City; this machine's if not given"},
    {"verbose", "", kImporting, "of iCalendar: list each appointment and what becomes of it"},
    {"dry-run", "", kImporting, "only say what would be done"},
    {"format", "F", In(Command::kExport) | kImporting, "csv or ics; ics if the file's name ends in .ics"},
    {"to", "D", kMoving, "the day to go to, YYYY-MM-DD"},
    {"date", "D", kWriting, "the day, YYYY-MM-DD"},
    {"start", "T", kWriting, "the start, HH:MM, in steps of five minutes"},
    {"end", "T", kWriting, "the end; when a new one has none, its start"},
    {"all-day", "", kWriting, "make it an all-day appointment"},
    {"no-all-day", "", kWriting, "make it a timed one"},
    {"subject", "TEXT", kWriting, "the subject, at most 149 characters"},
    {"notes", "TEXT", kWriting, "the notes, at most 1023 characters"},
    {"category", "NAME", kWriting, "the category, at most 29 characters; empty for none"},
    {"confidential", "", kWriting, "show it to the Owner level only"},
    {"no-confidential", "", kWriting, "show it to all levels"},
    {"repeat", "RULE", kWriting, "daily:N, weekly:N[:mon,tue,...], monthly:N or yearly:N"},
    {"until", "D", kWriting, "the last day that it may fall on"},
    {"no-repeat", "", kWriting, "let it fall on its date only"},
    {"offset", "N", kNaming | kContacting, "which record, where several have the ID"},
    {"examples", "", In(Command::kNew), "begin with three example appointments"},
    {"group", "G", In(Command::kNew) | In(Command::kShare), "the group of users, by its name"},
    {"force", "", In(Command::kCompact), "also where the file may be open on another machine"},
    {"name", "TEXT", kContacting, "the contact's name, at most 49 characters"},
    {"email", "TEXT", kContacting, "the contact's e-mail address, at most 259 characters"},
    {"book", "FILE", kContacting, "the address book, if it is not the one of the settings"},
    {"format", "F", kShowing, "text, csv or json"},
    {"password", "PW", kGuarded, "a password of the file; other users can see it"},
    {"password-file", "F", kGuarded, "take the password from the first line of F"},
};

const CommandInfo* FindCommand(std::string_view name) {
  const auto* const found = std::find_if(std::begin(kCommands), std::end(kCommands),
                                         [name](const CommandInfo& info) { return info.name == name; });
  return found == std::end(kCommands) ? nullptr : found;
}

const CommandInfo* FindCommand(Command command) {
  const auto* const found =
      std::find_if(std::begin(kCommands), std::end(kCommands),
                   [command](const CommandInfo& info) { return info.command == command; });
  return found == std::end(kCommands) ? nullptr : found;
}

const OptionInfo* FindOption(Command command, std::string_view name) {
  for (const OptionInfo& option : kOptions) {
    if (option.name == name && (option.commands & In(command)) != 0) return &option;
  }
  return nullptr;
}

Outcome WrongUsage(const std::string& what) {
  return Fail(kUsage, what + "; --help tells more");
}

std::string Quote(std::string_view word) {
  return std::string("\"").append(OneLine(word)).append("\"");
}

// Takes the option in words[at] and, where it has one, its value, which may be the next word.
Outcome TakeOption(const std::vector<std::string>& words, std::size_t& at, Arguments& arguments) {
  const std::string& word = words[at];
  const std::size_t equals = word.find('=');
  const std::string name = word.substr(2, equals == std::string::npos ? equals : equals - 2);
  const OptionInfo* option = FindOption(arguments.command, name);
  if (option == nullptr) return WrongUsage("there is no option " + Quote("--" + name) + " here");
  std::string value;
  if (option->value.empty()) {
    if (equals != std::string::npos) return WrongUsage("--" + name + " takes no value");
  } else if (equals != std::string::npos) {
    value = word.substr(equals + 1);
  } else if (++at < words.size()) {
    value = words[at];
  } else {
    return WrongUsage("--" + name + " needs a value");
  }
  if (!arguments.options.emplace(name, value).second) return WrongUsage("--" + name + " is given twice");
  return {};
}

// What the command takes besides options, in the order of its help; a word in brackets may be missing.
Outcome TakeOperands(const CommandInfo& command, const std::vector<std::string>& given,
                     Arguments& arguments) {
  std::size_t most = 0;
  std::size_t least = 0;
  std::istringstream words{std::string(command.operands)};
  for (std::string word; words >> word; ++most) {
    if (word[0] != '[') ++least;
    if (most >= given.size()) continue;
    std::string& place = word == "FILE"                         ? arguments.file
                         : word == "ACTION"                     ? arguments.action
                         : word.find("ID") != std::string::npos ? arguments.id
                                                                : arguments.other;
    place = given[most];
    if (&place != &arguments.id && given[most].empty()) return WrongUsage("the name of the file is empty");
  }
  if (least <= given.size() && given.size() <= most) return {};
  if (most == 0) return WrongUsage(std::string(command.name) + " takes options only");
  return WrongUsage(std::string(command.name) + " takes " + std::string(command.operands) + ", but " +
                    std::to_string(given.size()) + " such words are given");
}

std::string OptionLine(const OptionInfo& option) {
  std::string line = std::string("  --").append(option.name);
  if (!option.value.empty()) line.append(" ").append(option.value);
  line.append(line.size() < kSummaryColumn ? kSummaryColumn - line.size() : 1, ' ');
  return line + std::string(option.summary) + "\n";
}

std::string ProgramHelp() {
  std::string text("Usage: ");
  text.append(kProgram).append(" COMMAND [FILE] [ID] [OPTION]...\n\n");
  text += "Reads and changes calendar files, also while Tempoline has them open.\n\nCommands:\n";
  for (const CommandInfo& info : kCommands) {
    std::string line("  ");
    line.append(info.name).append(" ").append(info.operands);
    line.append(kCommandColumn - line.size(), ' ');
    text.append(line).append(info.summary).append("\n");
  }
  text.append("\n").append(kProgram).append(
      " COMMAND --help tells a command's options; --version the version.\n");
  text += "Dates are YYYY-MM-DD, times HH:MM from 00:00 to 23:55. The password of a file may also be\n";
  text += "in the variable TEMPOLINE_PASSWORD.\n\n";
  text += "Exit codes: 0 done, 1 usage, 2 file (and faults found), 3 refused, 4 locked or in use.\n";
  return text;
}

}  // namespace

const std::string& Arguments::Value(std::string_view option) const {
  static const std::string kNothing;
  const auto found = options.find(option);
  return found == options.end() ? kNothing : found->second;
}

Outcome ParseArguments(const std::vector<std::string>& words, Arguments& arguments) {
  if (words.empty()) return WrongUsage("no command is given");
  arguments = {};
  arguments.help = words[0] == "--help" || words[0] == "-h";
  arguments.version = words[0] == "--version";
  if (arguments.help || arguments.version) return {};
  const CommandInfo* command = FindCommand(words[0]);
  if (command == nullptr) return WrongUsage("there is no command " + Quote(words[0]));
  arguments.command = command->command;

  std::vector<std::string> operands;
  bool optionsEnded = false;
  for (std::size_t at = 1; at < words.size(); ++at) {
    const std::string& word = words[at];
    if (optionsEnded || word.size() < 2 || word[0] != '-') {
      operands.push_back(word);
    } else if (word == "--") {
      optionsEnded = true;
    } else if (word == "--help" || word == "-h") {
      arguments.help = true;
      return {};
    } else if (!word.starts_with("--")) {
      return WrongUsage("there is no option " + Quote(word) + " here");
    } else {
      Outcome taken = TakeOption(words, at, arguments);
      if (!taken.IsDone()) return taken;
    }
  }
  return TakeOperands(*command, operands, arguments);
}

std::string HelpText(Command command) {
  const CommandInfo* info = FindCommand(command);
  if (info == nullptr) return ProgramHelp();
  std::string text("Usage: ");
  text.append(kProgram).append(" ").append(info->name);
  if (!info->operands.empty()) text.append(" ").append(info->operands);
  std::string options;
  for (const OptionInfo& option : kOptions) {
    if ((option.commands & In(command)) != 0) options += OptionLine(option);
  }
  text.append(options.empty() ? "" : " [OPTION]...");
  text.append("\n\nUse it to ").append(info->summary).append(".\n");
  return options.empty() ? text : text + "\nOptions:\n" + options;
}

std::vector<std::string> AllWords() {
  std::vector<std::string> words;
  for (const CommandInfo& info : kCommands) words.emplace_back(info.name);
  for (const OptionInfo& option : kOptions) words.push_back(std::string("--").append(option.name));
  return words;
}

}  // namespace cli
