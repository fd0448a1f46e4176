// How commands get at a calendar file: the password and its level, opening, and finding a record. Outcomes
// name the file.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "cli/arguments.h"
#include "cli/outcome.h"
#include "core/store/command_result.h"
#include "core/store/record_file.h"
#include "core/store/record_key.h"

namespace cli {

// "path: message" as one line, whatever breaks the message has.
Outcome FailOn(const std::string& path, ExitCode code, std::string_view message);

// The code of a file that was not opened.
ExitCode CodeOf(core::OpenError error);

// What a change came to; done for kDone.
Outcome DescribeChange(const core::RecordFile& file, core::CommandResult result);

// The password that was given, in the code page of files; none is an empty one.
Outcome FindPassword(const Arguments& arguments, std::string& password);

// Opens the file without writing to it, its open count included, with the password that the options or the
// environment give. kRefused when that is none of the file's. Files of other kinds open as well.
Outcome OpenToRead(const Arguments& arguments, std::unique_ptr<core::RecordFile>& file);

// The same, and only a calendar will do.
Outcome OpenCalendarToRead(const Arguments& arguments, std::unique_ptr<core::RecordFile>& file);

// Opens a calendar as the window program does, after bringing it in order where a program died with it. Who
// may only read it is refused before that.
Outcome OpenCalendarToChange(const Arguments& arguments, std::unique_ptr<core::RecordFile>& file);

// Whether a record with these bytes is one that the level may see.
bool MaySee(const core::RecordHeader& record, core::Access level);

// Finds the record with the id of `key` and, where several have it, at the offset that the arguments give;
// completes the key.
Outcome FindRecord(const Arguments& arguments, const core::RecordFile& file, core::RecordKey& key);

}  // namespace cli
