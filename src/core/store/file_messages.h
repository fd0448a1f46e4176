// Sentences for the user about files. Each names its file, by the path that the user knows, in the file
// system's encoding (UTF-8).
#pragma once

#include <string>

#include "core/store/command_result.h"
#include "core/store/record_file.h"

namespace core {

// The path in double quotes, as every message shows it.
std::string Quoted(const std::string& path);

// Why a file was not written, made or replaced, as a whole sentence; empty where the system says nothing.
std::string DescribeFileResult(platform::FileResult why);

// That the file at the path was not written, with that sentence.
std::string CannotWriteText(const std::string& path, platform::FileResult why);

// That the file was not opened, with a whole sentence that says why.
std::string CannotOpenText(const std::string& path, const std::string& reason);

// The same for what opening a record file came to; empty for kNone.
std::string DescribeOpenError(const std::string& path, OpenError error);

// The text that a file could not be created, and why where the system says it; it does not name the file.
std::string CannotCreateText(platform::FileResult why);

// That a file which may not be written was opened all the same.
std::string OpenAsReaderText(const std::string& path);

// Why an operation on an open file failed; empty for kNone.
std::string DescribeFault(const std::string& path, FileFault fault);

// What to tell the user of a command on an open file: for kFailed what its LastFault says, and never nothing.
// Empty for kDone and for what is passed over in silence.
std::string DescribeResult(const RecordFile& file, CommandResult result);

// That somebody else has the file open, where it is wanted for oneself alone.
std::string AccessDeniedText(const std::string& path);

}  // namespace core
