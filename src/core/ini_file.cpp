#include "core/ini_file.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/system/program_folder.h"

namespace core {
namespace {

constexpr std::size_t kNumberLength = 255;  // characters of a value that are looked at for a number

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

std::int32_t LeadingNumber(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  std::size_t at = 0;
  while (at < text.size() && IsBlank(text[at])) ++at;
  const bool negative = at < text.size() && text[at] == '-';
  if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
  std::int64_t number = 0;
  for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
    number = std::min<std::int64_t>(number * 10 + (text[at] - '0'), std::int64_t{Limits::max()} + 1);
  }
  if (negative) number = -number;
  return static_cast<std::int32_t>(std::min<std::int64_t>(number, Limits::max()));
}

}  // namespace

IniFile::IniFile() : path(ModuleFolder() + "/" + platform::ExecutableBaseName() + ".ini") {}

IniFile::IniFile(std::string_view name) : path(ModuleFolder() + "/" + std::string(name)) {}

IniFile IniFile::FromPath(std::string path) {
  IniFile file;
  file.path = std::move(path);
  return file;
}

bool IniFile::ReadString(std::string_view section, std::string_view key, std::string& value) const {
  value.clear();
  return platform::ReadProfileString(path, section, key, value) && !value.empty();
}

bool IniFile::ReadInt(std::string_view section, std::string_view key, std::int32_t& value) const {
  std::string text;
  if (!ReadString(section, key, text)) return false;
  value = LeadingNumber(std::string_view(text).substr(0, kNumberLength));
  return true;
}

bool IniFile::WriteString(std::string_view section, std::string_view key, std::string_view value) const {
  return platform::WriteProfileString(path, section, key, value);
}

bool IniFile::WriteInt(std::string_view section, std::string_view key, std::int32_t value) const {
  return WriteString(section, key, std::to_string(value));
}

bool IniFile::Write(std::string_view section, std::span<const IniEntry> entries) const {
  return platform::WriteProfileStrings(path, section, entries);
}

bool IniFile::WritePrivately(std::string_view section, std::span<const IniEntry> entries) const {
  return platform::WriteProfileStrings(path, section, entries, true);
}

std::string ModuleFolder() {
  return platform::ProgramFolder();
}

int NetworkRefreshSeconds() {
  std::int32_t seconds = 2;
  IniFile("Daybrix.ini").ReadInt("Preference", "NetworkRefresh", seconds);
  return std::clamp(seconds, 1, 60);
}

}  // namespace core
