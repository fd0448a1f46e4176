#include "core/exchange/ical_text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>

namespace core {
namespace {

char Upper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// The whole text with each logical line on a line of its own, ended by LF.
std::string Unfold(std::string_view bytes) {
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  std::string text;
  text.reserve(bytes.size() + 1);
  while (!bytes.empty()) {
    const std::size_t end = std::min(bytes.find_first_of(std::string_view("\r\n")), bytes.size());
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(std::min(end + 1, bytes.size()));
    if (line.empty()) continue;
    if (line.front() == ' ' || line.front() == '\t') {
      line.remove_prefix(1);
      if (!text.empty()) text.pop_back();
    }
    text.append(line) += '\n';
  }
  text.erase(std::remove(text.begin(), text.end(), '\0'), text.end());
  return text;
}

constexpr std::array<std::pair<std::string_view, IcalKind>, 5> kKinds{{{"VEVENT", IcalKind::kEvent},
                                                                       {"VTODO", IcalKind::kTask},
                                                                       {"VJOURNAL", IcalKind::kJournal},
                                                                       {"VFREEBUSY", IcalKind::kFreeBusy},
                                                                       {"VTIMEZONE", IcalKind::kZone}}};
constexpr std::string_view kCalendar = "VCALENDAR";

std::optional<IcalKind> KindOf(std::string_view name) {
  for (const auto& [known, kind] : kKinds) {
    if (EqualsIgnoringCase(name, known)) return kind;
  }
  return std::nullopt;
}

// Finds the components. Only their own BEGIN and END count: what lies within them is left to their readers.
class Finder {
 public:
  explicit Finder(IcalDocument& found) : document(found) {}

  // `cutOff`: the last line is not whole.
  void Find(bool cutOff) {
    document.calendars.emplace_back();
    std::string_view rest = document.text;
    const char* const end = rest.data() + rest.size();
    IcalLine line;
    while (TakeIcalLine(rest, line)) Take(line, line.name.data(), rest.data());
    if (!open) return;
    Close(end, true);
    if (!cutOff) return;
    // Half a repeat or a date would be another one.
    std::string_view& last = document.components.back().text;
    const std::size_t lineEnd = last.size() < 2 ? std::string_view::npos : last.rfind('\n', last.size() - 2);
    last = last.substr(0, lineEnd == std::string_view::npos ? 0 : lineEnd + 1);
  }

 private:
  void Take(const IcalLine& line, const char* begin, const char* next) {
    if (EqualsIgnoringCase(line.name, "BEGIN")) {
      Begin(TrimBlanks(line.value), begin, next);
    } else if (EqualsIgnoringCase(line.name, "END")) {
      End(TrimBlanks(line.value), begin);
    } else if (open) {
      if (inner == 0 && current.kind == IcalKind::kEvent && current.uid.empty() &&
          EqualsIgnoringCase(line.name, "UID"))
        current.uid = TrimBlanks(line.value);
    } else if (EqualsIgnoringCase(line.name, "VERSION")) {
      document.calendars.back().version = TrimBlanks(line.value);
    } else if (EqualsIgnoringCase(line.name, "METHOD")) {
      document.calendars.back().method = TrimBlanks(line.value);
    }
  }

  void Begin(std::string_view name, const char* begin, const char* next) {
    const std::optional<IcalKind> kind = KindOf(name);
    const bool calendar = EqualsIgnoringCase(name, kCalendar);
    if (!kind && !calendar) {
      if (open) ++inner;
      return;
    }
    document.isCalendar = true;
    if (open) Close(begin, true);
    if (calendar) {
      document.calendars.emplace_back();
      return;
    }
    open = true;
    inner = 0;
    start = next;
    current = {*kind, false, static_cast<std::uint32_t>(document.calendars.size() - 1), {}, {}};
  }

  void End(std::string_view name, const char* begin) {
    if (!open) return;
    const std::optional<IcalKind> kind = KindOf(name);
    if (kind == current.kind) {
      Close(begin, false);
    } else if (kind || EqualsIgnoringCase(name, kCalendar)) {
      Close(begin, true);
    } else if (inner > 0) {
      --inner;
    }
  }

  void Close(const char* end, bool cutOff) {
    current.text = {start, static_cast<std::size_t>(end - start)};
    current.cutOff = cutOff;
    document.components.push_back(current);
    open = false;
  }

  IcalDocument& document;
  bool open = false;
  IcalComponent current{};
  const char* start = nullptr;
  std::size_t inner = 0;  // components within the open one
};

}  // namespace

bool TakeIcalLine(std::string_view& text, IcalLine& line) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view whole = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    const std::size_t name = whole.find_first_of(":;");
    if (name == std::string_view::npos || name == 0) continue;
    std::size_t colon = name;
    if (whole[name] == ';') {
      bool quoted = false;
      while (colon < whole.size() && (quoted || whole[colon] != ':')) quoted ^= whole[colon++] == '"';
      // A quote that never ends hides no value.
      if (colon == whole.size()) colon = whole.find(':', name);
      if (colon == std::string_view::npos) continue;
    }
    line = {whole.substr(0, name), whole.substr(name, colon - name), whole.substr(colon + 1)};
    return true;
  }
  return false;
}

std::string_view IcalParameter(const IcalLine& line, std::string_view name) {
  std::string_view rest = line.parameters;
  while (!rest.empty()) {
    rest.remove_prefix(1);
    std::size_t end = 0;
    bool quoted = false;
    while (end < rest.size() && (quoted || rest[end] != ';')) quoted ^= rest[end++] == '"';
    std::string_view parameter = rest.substr(0, end);
    rest.remove_prefix(end);
    const std::size_t equals = parameter.find('=');
    if (equals == std::string_view::npos ||
        !EqualsIgnoringCase(TrimBlanks(parameter.substr(0, equals)), name))
      continue;
    parameter = TrimBlanks(parameter.substr(equals + 1));
    if (parameter.size() >= 2 && parameter.front() == '"' && parameter.back() == '"')
      parameter = parameter.substr(1, parameter.size() - 2);
    return parameter;
  }
  return {};
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() &&
         std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) { return Upper(x) == Upper(y); });
}

std::string_view TrimBlanks(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::uint64_t HashBytes(std::string_view bytes, std::uint64_t hash) {
  for (const char byte : bytes) {
    hash ^= static_cast<unsigned char>(byte);
    hash *= 1099511628211U;
  }
  return hash;
}

void ReadIcalDocument(std::string_view bytes, IcalDocument& document) {
  document = {};
  document.text = Unfold(bytes);
  Finder(document).Find(!bytes.empty() && bytes.back() != '\n' && bytes.back() != '\r');
}

}  // namespace core
