// The standard output and error of a program for terminals and scripts. Nothing is buffered here, so that
// what was written is written, and what could not be is known.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace platform {

// To be called first in main. Takes the place of streams that the program was started without: else the next
// file that is opened would get their number, and texts would be written into it. And a reader that goes away
// makes a write fail instead of ending the program.
void PrepareStandardStreams();

// Writes all bytes. False, with `errno` telling why, when they did not all go out.
bool WriteStandardOutput(std::string_view bytes);
bool WriteStandardError(std::string_view bytes);

// Reads standard input to its end. False when that fails, or there are more than `limit` bytes.
[[nodiscard]] bool ReadStandardInput(std::size_t limit, std::string& bytes);

// Columns of the terminal that standard output goes to; 0 where it goes elsewhere.
int TerminalWidth();

}  // namespace platform
