// Settings files: one full path, and values read and written by section and key. Nothing is cached, so that a
// value another copy of the program wrote is seen at once. A file that does not exist reads as all keys
// missing.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/system/profile_file.h"

namespace core {

using IniEntry = platform::ProfileEntry;

class IniFile {
 public:
  // The program's own file: the executable's base name with ".ini", in the program folder.
  IniFile();

  // A file in the program folder, e.g. "Daybrix.ini".
  explicit IniFile(std::string_view name);

  // A file by its full path.
  static IniFile FromPath(std::string path);

  const std::string& Path() const { return path; }

  // True only when the key has at least one character: an empty value counts as missing and leaves `value`
  // empty.
  bool ReadString(std::string_view section, std::string_view key, std::string& value) const;

  // The number at the start of the value: blanks, a sign, digits up to the first other character; 0 without
  // digits, and the nearest 32-bit number when there are too many. False, `value` untouched, when the key is
  // missing.
  bool ReadInt(std::string_view section, std::string_view key, std::int32_t& value) const;

  // False when the file could not be written; it then stands as it was.
  [[nodiscard]] bool WriteString(std::string_view section, std::string_view key,
                                 std::string_view value) const;
  [[nodiscard]] bool WriteInt(std::string_view section, std::string_view key, std::int32_t value) const;
  // Several keys of a section at once. While another program holds the file each write may wait for two
  // seconds: what belongs together is written together. WritePrivately makes the file its user's alone
  // before the values are in it.
  [[nodiscard]] bool Write(std::string_view section, std::span<const IniEntry> entries) const;
  [[nodiscard]] bool WritePrivately(std::string_view section, std::span<const IniEntry> entries) const;

 private:
  std::string path;
};

// The folder of settings, contacts and the default calendar, without a trailing slash.
std::string ModuleFolder();

// Seconds between two looks at a shared file's change counter: "NetworkRefresh" of section "Preference" in
// Daybrix.ini, 2 when missing, held to 1..60.
int NetworkRefreshSeconds();

}  // namespace core
