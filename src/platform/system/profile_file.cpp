#include "platform/system/profile_file.h"

#include <fcntl.h>

#include <algorithm>

#include "platform/system/descriptor.h"
#include "platform/system/file.h"
#include "platform/system/lock_file.h"

namespace platform {
namespace {

constexpr std::size_t kMostBytes = 1 << 20;
constexpr ByteLock kWriterLock = {0, F_WRLCK, 2000};
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";  // put in front by some editors

// One line of the file, as positions in it.
struct Line {
  std::size_t begin;
  std::size_t end;   // of the text, before the line break
  std::size_t next;  // of the following line
};

// Where a key stands, or where it would be put.
struct Place {
  bool sectionFound = false;
  bool keyFound = false;
  Line key = {};           // the key's line
  std::size_t insert = 0;  // behind the last line of the section that is not blank
};

std::string_view Trim(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
}

// By hand rather than by the locale, which knows other letters.
char LowerAscii(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool SameName(std::string_view one, std::string_view other) {
  return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                    [](char a, char b) { return LowerAscii(a) == LowerAscii(b); });
}

Line LineAt(std::string_view content, std::size_t begin) {
  const std::size_t feed = content.find('\n', begin);
  Line line = {begin, content.size(), content.size()};
  if (feed != std::string_view::npos) {
    line.end = feed;
    line.next = feed + 1;
  }
  while (line.end > line.begin && content[line.end - 1] == '\r') --line.end;
  if (begin == 0 && content.substr(0, line.end).starts_with(kByteOrderMark)) {
    line.begin = kByteOrderMark.size();
  }
  return line;
}

std::string_view TextOf(std::string_view content, const Line& line) {
  return Trim(content.substr(line.begin, line.end - line.begin));
}

// The name runs to the last bracket, so that a name with brackets reads back.
bool IsSectionLine(std::string_view text, std::string_view& name) {
  const std::size_t close = text.rfind(']');
  if (!text.starts_with('[') || close == std::string_view::npos) return false;
  name = Trim(text.substr(1, close - 1));
  return true;
}

Place FindKey(std::string_view content, std::string_view section, std::string_view key) {
  Place place;
  for (std::size_t at = 0; at < content.size();) {
    const Line line = LineAt(content, at);
    const std::string_view text = TextOf(content, line);
    at = line.next;
    std::string_view name;
    if (IsSectionLine(text, name)) {
      if (place.sectionFound) return place;
      place.sectionFound = SameName(name, section);
    }
    if (!place.sectionFound) continue;
    if (!text.empty()) place.insert = line.next;
    const std::size_t equals = text.find('=');
    if (text.starts_with('[') || equals == std::string_view::npos) continue;
    if (!SameName(Trim(text.substr(0, equals)), key)) continue;
    place.keyFound = true;
    place.key = line;
    return place;
  }
  return place;
}

// Behind the blanks that follow the equals sign, up to the end of the line's text.
std::string_view ValueOf(std::string_view content, const Line& line) {
  const std::string_view text = TextOf(content, line);
  return Trim(text.substr(text.find('=') + 1));
}

std::string_view WithoutQuotes(std::string_view value) {
  const bool quoted =
      value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
  return quoted ? value.substr(1, value.size() - 2) : value;
}

std::string Quoted(std::string_view value) {
  constexpr std::string_view kNeedsQuotes = " \t\"'";
  std::string text(value);
  std::replace(text.begin(), text.end(), '\r', ' ');
  std::replace(text.begin(), text.end(), '\n', ' ');
  const bool needed = !text.empty() && (kNeedsQuotes.find(text.front()) != std::string_view::npos ||
                                        kNeedsQuotes.find(text.back()) != std::string_view::npos);
  return needed ? '"' + text + '"' : text;
}

// Whether a line with these names would be found again.
bool NamesCanBeWritten(std::string_view section, std::string_view key) {
  constexpr std::string_view kBreaks = "\r\n";
  return section.find_first_of(kBreaks) == std::string_view::npos && !key.empty() && key.front() != '[' &&
         key.front() != ';' && key.find('=') == std::string_view::npos &&
         key.find_first_of(kBreaks) == std::string_view::npos;
}

// The line break of the file, as its first line has it.
std::string_view BreakOf(std::string_view content) {
  const std::size_t feed = content.find('\n');
  return feed != std::string_view::npos && feed > 0 && content[feed - 1] == '\r' ? "\r\n" : "\n";
}

// `content` with the key set to the text of a value.
std::string WithKey(const std::string& content, std::string_view section, std::string_view key,
                    const std::string& text) {
  const Place place = FindKey(content, section, key);
  std::string changed = content;
  if (place.keyFound) {
    const std::size_t behindEquals = content.find('=', place.key.begin) + 1;
    const std::string_view old = ValueOf(content, place.key);
    const std::size_t begin =
        old.empty() ? behindEquals : static_cast<std::size_t>(old.data() - content.data());
    const std::size_t end = old.empty() ? place.key.end : begin + old.size();
    return changed.replace(begin, end - begin, text);
  }
  const std::string lineBreak(BreakOf(content));
  const std::size_t at = place.sectionFound ? place.insert : content.size();
  std::string added;
  if (at == content.size() && at > 0 && content.back() != '\n') added += lineBreak;
  if (!place.sectionFound) added.append("[").append(section).append("]").append(lineBreak);
  added.append(key).append("=").append(text).append(lineBreak);
  return changed.insert(at, added);
}

}  // namespace

bool ReadProfileString(const std::string& path, std::string_view section, std::string_view key,
                       std::string& value) {
  value.clear();
  std::string content;
  return ReadWholeFile(path, kMostBytes, content) && ReadProfileText(content, section, key, value);
}

bool ReadProfileText(std::string_view content, std::string_view section, std::string_view key,
                     std::string& value) {
  value.clear();
  const Place place = FindKey(content, Trim(section), Trim(key));
  if (!place.keyFound) return false;
  value = WithoutQuotes(ValueOf(content, place.key));
  return true;
}

bool WriteProfileString(const std::string& path, std::string_view section, std::string_view key,
                        std::string_view value) {
  const ProfileEntry entry = {key, std::string(value)};
  return WriteProfileStrings(path, section, {&entry, 1});
}

bool WriteProfileStrings(const std::string& path, std::string_view section,
                         std::span<const ProfileEntry> entries, bool privately) {
  section = Trim(section);
  const auto writable = [section](const ProfileEntry& entry) {
    return NamesCanBeWritten(section, Trim(entry.key));
  };
  if (!std::all_of(entries.begin(), entries.end(), writable)) return false;
  // Beside the file itself rather than a link to it, so that copies that know it by different paths meet
  // here. The lock file stays for good: taking it away would let two copies lock two files of its name.
  const std::string target = ResolvedPath(path);
  Descriptor lock;
  bool reach = true;
  if (OpenLocked(target + ".lock", O_RDWR | O_CREAT, 0666, kWriterLock, lock, &reach) != FileResult::kDone) {
    return false;
  }
  LockFile guard;
  if (!reach && guard.Take(target, GuardPatience()) != GuardResult::kHeld) return false;
  if (privately && !MakePrivateFile(target)) return false;
  std::string content;
  // A file that is there but cannot be read must not be mistaken for an empty one.
  if (!ReadWholeFile(target, kMostBytes, content) && FileExists(target)) return false;
  std::string changed = content;
  for (const auto& [key, value] : entries) changed = WithKey(changed, section, Trim(key), Quoted(value));
  if (changed.size() > kMostBytes) return false;
  return (changed == content && FileExists(target)) || ReplaceFile(target, changed.data(), changed.size());
}

}  // namespace platform
