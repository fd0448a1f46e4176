#include "cli/cli.h"

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/outcome.h"

namespace cli {
namespace {

Outcome RunCommand(const Arguments& arguments, Output& output) {
  switch (arguments.command) {
    case Command::kInfo:
      return InfoCommand(arguments, output);
    case Command::kList:
      return ListCommand(arguments, output);
    case Command::kAlarms:
      return AlarmsCommand(arguments, output);
    case Command::kAdd:
      return AddCommand(arguments, output);
    case Command::kEdit:
      return EditCommand(arguments);
    case Command::kMove:
      return MoveCommand(arguments);
    case Command::kCopy:
      return CopyCommand(arguments, output);
    case Command::kDelete:
      return DeleteCommand(arguments);
    case Command::kCompact:
      return CompactCommand(arguments);
    case Command::kCheck:
      return CheckCommand(arguments, output);
    case Command::kNew:
      return NewCommand(arguments);
    case Command::kShare:
      return ShareCommand(arguments);
    case Command::kContacts:
      return ContactsCommand(arguments, output);
    case Command::kParticipants:
      return ParticipantsCommand(arguments, output);
    case Command::kRegister:
      return RegisterCommand(output);
    case Command::kExport:
      return ExportCommand(arguments, output);
    case Command::kReport:
      return ReportCommand(arguments, output);
    case Command::kImport:
      return ImportCommand(arguments, output);
    case Command::kNone:
      break;
  }
  return {};
}

}  // namespace

int RunCommandLine(const std::vector<std::string>& words, const Sink& output, const Sink& errors) {
  const auto say = [&errors](const std::string& message) {
    if (!message.empty()) errors(std::string(kProgram) + ": " + message + "\n");
  };
  Output out(output);
  Arguments arguments;
  Outcome outcome = ParseArguments(words, arguments);
  if (outcome.IsDone()) {
    if (arguments.version) {
      out.Write(std::string(kProgram) + " " DAYBRIX_VERSION "\n");
    } else if (arguments.help) {
      out.Write(HelpText(arguments.command));
    } else {
      outcome = RunCommand(arguments, out);
    }
  }
  const bool written = out.Flush();
  say(outcome.message);
  if (written) return outcome.code;
  if (!out.ReaderLeft()) {
    say((arguments.file.empty() ? "" : arguments.file + ": ") + outcome.made +
        (outcome.made.empty() ? "" : " ") + "The output could not be written.");
  }
  return outcome.code == kDone ? kFile : outcome.code;
}

}  // namespace cli
