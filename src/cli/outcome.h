// What a command came to: the exit code of the program and, unless it is done, one line that says why.
#pragma once

#include <string>
#include <utility>

namespace cli {

enum ExitCode {
  kDone = 0,
  kUsage = 1,    // the command line cannot be understood, or a value in it cannot be taken
  kFile = 2,     // a file, or the output, cannot be read or written; check found something
  kRefused = 3,  // the password or its level does not allow it, or there is no such record, or more than one
  kLocked = 4,   // somebody edits the record, or has the file to himself
};

struct Outcome {
  ExitCode code = kDone;
  std::string message;    // one line of UTF-8 without the program's name; may be empty
  std::string made = {};  // what has been done all the same where the output cannot be written; may be empty

  bool IsDone() const { return code == kDone; }
};

inline Outcome Fail(ExitCode code, std::string message) {
  return {code, std::move(message)};
}

}  // namespace cli
