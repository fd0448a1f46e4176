// The commands. Each does one thing to one file, writes what it has to say to `output` and answers what came
// of it; a message with kDone is a notice.
#pragma once

#include "cli/arguments.h"
#include "cli/outcome.h"
#include "cli/output.h"

namespace cli {

Outcome ListCommand(const Arguments& arguments, Output& output);
Outcome AlarmsCommand(const Arguments& arguments, Output& output);
Outcome InfoCommand(const Arguments& arguments, Output& output);
Outcome CheckCommand(const Arguments& arguments, Output& output);

Outcome AddCommand(const Arguments& arguments, Output& output);
Outcome EditCommand(const Arguments& arguments);
Outcome MoveCommand(const Arguments& arguments);
Outcome CopyCommand(const Arguments& arguments, Output& output);
Outcome DeleteCommand(const Arguments& arguments);

Outcome NewCommand(const Arguments& arguments);
Outcome ShareCommand(const Arguments& arguments);
Outcome CompactCommand(const Arguments& arguments);

Outcome ExportCommand(const Arguments& arguments, Output& output);
Outcome ReportCommand(const Arguments& arguments, Output& output);
Outcome ImportCommand(const Arguments& arguments, Output& output);

Outcome ContactsCommand(const Arguments& arguments, Output& output);
Outcome ParticipantsCommand(const Arguments& arguments, Output& output);
Outcome RegisterCommand(Output& output);

}  // namespace cli
