// Settings files in private-profile form: "[Section]" lines followed by "key=value" lines, anything else kept
// as it is. Names are compared without regard to the case of ASCII letters, the first match wins, blanks
// around names and values are trimmed, and one pair of equal quotes (' or ") around a value is stripped.
// Bytes are not interpreted.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace platform {

// The value of a key. False when the file, the section or the key is missing; an empty value is found (true,
// empty). A file of more than 1 MiB reads as missing.
bool ReadProfileString(const std::string& path, std::string_view section, std::string_view key,
                       std::string& value);

// The same of a file's bytes.
bool ReadProfileText(std::string_view content, std::string_view section, std::string_view key,
                     std::string& value);

// Sets one key in place, or adds it at the end of its section, or adds the section; every other line, comment
// and their order stay. A value with blanks or quotes at its ends is written in quotes so that it reads back
// the same; line breaks in it are written as blanks. The file is replaced whole by a rename, and copies that
// write different keys at the same time (a lock file beside it keeps them apart) lose neither. False when it
// could not be written; the old file then stands. So it does when a name could not be read back: a line break
// in it, or a key that is empty, holds an equals sign, or begins with '[' or ';'.
bool WriteProfileString(const std::string& path, std::string_view section, std::string_view key,
                        std::string_view value);

// The same of several keys of one section, in one write: all of them are in the file afterwards, or none.
// `privately` first makes the file its user's alone (MakePrivateFile), and no writer of another copy, who
// passes on the rights that he found, can come between.
struct ProfileEntry {
  std::string_view key;
  std::string value;
};
bool WriteProfileStrings(const std::string& path, std::string_view section,
                         std::span<const ProfileEntry> entries, bool privately = false);

}  // namespace platform
