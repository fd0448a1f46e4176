#include "structure/structure_rules.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>

namespace tests {
namespace {

// How high each folder lies. An include stays in its folder or points to a lower floor.
const std::map<std::string, int> kFloors = {
    {"main.cpp", 8},        {"calendar", 7},        {"cli", 7},     {"net", 6},
    {"exchange", 6},        {"shell", 5},           {"pickers", 5}, {"addressbook", 5},
    {"controls", 4},        {"framework", 3},       {"core", 2},    {"resources", 1},
    {"platform/system", 1}, {"platform/desktop", 1}};

// How high each wing of a floor lies; the files beside the wings are one as well.
const std::map<std::string, int> kWings = {
    {"core", 0},          {"core/store", 1},     {"core/calendar", 2},
    {"core/contacts", 2}, {"core/events", 3},    {"core/exchange", 4},
    {"calendar", 2},      {"calendar/views", 1}, {"calendar/dialogs", 0}};

const std::regex kInclude("^#include [<\"]([^>\"]*)");
const std::regex kQtInclude("^#include ([<\"]Q[A-Zt]|\"platform/desktop/qt/)");
const std::regex kQtName("\\bQ[A-Zt]");
const std::regex kClockOrFile(
    "\\b((system_clock|localtime|localtime_r|gmtime|gettimeofday|clock_gettime|QDate|QTime|QDateTime|fopen|["
    "io]?fstream|"
    "filesystem|O_(RDONLY|WRONLY|RDWR|CREAT))\\b|time\\()");
// In pieces, because this file is looked at as well.
const std::regex kPaper(
    "\\b(spe"
    "cs?|specifi"
    "cations?)\\b");
const std::regex kNumberedPart("\\bparts? [0-9]+\\.[0-9]");

bool IsCpp(const SourceFile& file) {
  return std::regex_search(file.path, std::regex("\\.(cpp|h)$"));
}

// Whether the file's path begins with one of these, written as alternatives.
bool IsIn(const SourceFile& file, const std::string& places) {
  return std::regex_search(file.path, std::regex("^(" + places + ")"));
}

// A line of C++ without its comment and without what stands in its quotes.
std::string CodeOf(std::string_view line) {
  std::string code;
  for (std::size_t i = 0; i < line.size() && !line.substr(i).starts_with("//"); ++i) {
    const char quote = line[i];
    const bool separatesDigits =
        quote == '\'' && i > 0 && std::isxdigit(static_cast<unsigned char>(line[i - 1])) != 0;
    code += quote;
    if (separatesDigits || (quote != '"' && quote != '\'')) continue;
    for (++i; i < line.size() && line[i] != quote; ++i) {
      if (line[i] == '\\') ++i;
    }
    code += quote;
  }
  while (code.ends_with(' ')) code.pop_back();
  return code;
}

// The first folder in a path below src/, the first two below platform/.
std::string FloorOf(const std::string& path) {
  return path.substr(0, path.find('/', path.starts_with("platform/") ? path.find('/') + 1 : 0));
}

std::string FolderOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

// Of two files of one floor.
bool WingMayInclude(const std::string& from, const std::string& to) {
  const auto fromWing = kWings.find(from);
  const auto toWing = kWings.find(to);
  if (fromWing == kWings.end() || toWing == kWings.end()) return fromWing == toWing;
  return from == to || toWing->second < fromWing->second;
}

// Both are paths below src/.
bool MayInclude(const std::string& path, const std::string& include) {
  const std::string from = FloorOf(path);
  const std::string to = FloorOf(include);
  if (!kFloors.contains(from) || !kFloors.contains(to)) return false;
  if ((from == "core" || from == "cli") && to != from) {
    return to == "platform/system" || include == "resources/strings.h" || include == "resources/text_ids.h" ||
           (from == "cli" && to == "core");
  }
  if (from == "platform/desktop" && to == "platform/system") return true;
  return from == to ? WingMayInclude(FolderOf(path), FolderOf(include)) : kFloors.at(to) < kFloors.at(from);
}

// One finding for each line of which `judge(line, code)` says what is wrong.
template <typename Judge>
Findings CheckLines(const SourceFile& file, const Judge& judge) {
  Findings findings;
  std::istringstream text(file.text);
  const bool cpp = IsCpp(file);
  int number = 0;
  for (std::string line; std::getline(text, line);) {
    const std::string wrong = judge(line, cpp ? CodeOf(line) : "");
    ++number;
    if (!wrong.empty()) findings.push_back(file.path + ":" + std::to_string(number) + ": " + wrong);
  }
  return findings;
}

// Follows the braces of one C++ file in the house's format, line by line. Only what opens at the depth of
// namespaces and classes is told apart: a container if the statement begins as one, else a function if the
// statement has a parenthesis, else a table.
struct BraceScanner {
  int depth = 0;
  int containers = 0;  // how many of the open braces are those of containers; they are the outer ones
  std::string statement;
  std::string head;  // of the open function, empty outside of one
  std::size_t lines = 0;

  // Takes a line of code; true when it closes the function `head` of `lines` lines.
  bool Take(const std::string& code) {
    const bool outside = depth == containers;
    if (outside) statement += code + ' ';
    for (const char c : code) depth += c == '{' ? 1 : c == '}' ? -1 : 0;
    if (outside && depth > containers && code.ends_with('{')) Open(code);
    ++lines;
    const bool closes = !head.empty() && depth <= containers;
    containers = std::min(containers, depth);
    if (std::string_view("{};:").find(code.empty() ? ' ' : code.back()) != std::string_view::npos)
      statement.clear();
    return closes;
  }

  void Open(const std::string& code) {
    static const std::regex kContainer(
        "^ *(namespace|class|struct|union|enum|extern)\\b|^ *template <[^(]*$");
    if (std::regex_search(statement, kContainer)) {
      containers = depth;
    } else if (statement.find('(') != std::string::npos) {
      head = code;
      lines = 0;
    }
  }
};

}  // namespace

std::vector<SourceFile> ReadProject(const std::string& folder) {
  namespace fs = std::filesystem;
  std::vector<SourceFile> files;
  std::error_code failed;
  for (fs::recursive_directory_iterator entry(folder, failed), end; !failed && entry != end;
       entry.increment(failed)) {
    const std::string path = entry->path().lexically_relative(folder).generic_string();
    if (path == ".git" || path == "build" || path == ".cache") entry.disable_recursion_pending();
    if (!entry->is_regular_file(failed) || path == "compile_commands.json") continue;
    std::ifstream stream(entry->path(), std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(stream), {}};
    if (text.find('\0') == std::string::npos) files.push_back({path, std::move(text)});
  }
  return files;
}

Findings UpwardIncludes(const SourceFile& file) {
  if (!IsIn(file, "src/") || !IsCpp(file)) return {};
  const std::string path = file.path.substr(4);
  return CheckLines(file, [&](const std::string& line, const std::string&) -> std::string {
    std::smatch include;
    if (!std::regex_search(line, include, kInclude) || line.ends_with('>') || MayInclude(path, include[1]))
      return "";
    return FolderOf(path) + " may not include " + include[1].str();
  });
}

Findings IncludeCircles(const std::vector<SourceFile>& files) {
  const auto unitOf = [](const std::string& path) { return path.substr(0, path.rfind('.')); };
  std::map<std::string, std::set<std::string>> includes;
  for (const SourceFile& file : files) {
    if (!IsIn(file, "src/") || IsIn(file, "src/platform/") || !IsCpp(file)) continue;
    std::set<std::string>& included = includes[unitOf(file.path)];
    std::istringstream text(file.text);
    std::smatch include;
    for (std::string line; std::getline(text, line);) {
      if (std::regex_search(line, include, kInclude)) included.insert("src/" + unitOf(include[1]));
    }
    included.erase(unitOf(file.path));
  }
  // What includes nothing that is left is in no circle; in the end only what leads to one remains.
  for (bool changed = true; changed;) {
    changed = std::erase_if(includes, [&](const auto& unit) {
                return std::none_of(unit.second.begin(), unit.second.end(),
                                    [&](const std::string& other) { return includes.contains(other); });
              }) > 0;
  }
  Findings findings;
  for (const auto& [unit, included] : includes)
    findings.push_back(unit + ": includes itself, or leads to a circle");
  return findings;
}

Findings StrayQt(const SourceFile& file) {
  const bool inside = IsIn(file, "src/platform/desktop/.*\\.h$");
  if (!IsCpp(file) || IsIn(file,
                           "src/platform/desktop/(qt/|.*\\.cpp$)|benchmarks/empty_window.cpp$|"
                           "tests/(support/(desktop_driver|screen_reader).cpp$|desktop/qt)")) {
    return {};
  }
  return CheckLines(file, [&](const std::string& line, const std::string& code) -> std::string {
    if (std::regex_search(line, kQtInclude)) return "Qt belongs behind the desktop layer";
    return inside && std::regex_search(code, kQtName)
               ? "a name of Qt in a header that the desktop layer offers"
               : "";
  });
}

Findings StrayClocksAndFiles(const SourceFile& file) {
  if (!IsIn(file, "src/") || !IsCpp(file) || IsIn(file, "src/platform/system/")) return {};
  return CheckLines(file, [](const std::string&, const std::string& code) -> std::string {
    std::smatch word;
    return std::regex_search(code, word, kClockOrFile) ? word.str() + " belongs into platform/system" : "";
  });
}

Findings OverlongFile(const SourceFile& file) {
  const auto lines = static_cast<std::size_t>(std::count(file.text.begin(), file.text.end(), '\n'));
  if (!IsIn(file, "src/|tests/|benchmarks/") || !IsCpp(file) || lines <= kMostFileLines) return {};
  return {file.path + ": " + std::to_string(lines) + " lines"};
}

Findings OverlongFunctions(const SourceFile& file) {
  if (!IsCpp(file)) return {};
  BraceScanner scanner;
  return CheckLines(file, [&](const std::string&, const std::string& code) -> std::string {
    if (!scanner.Take(code.starts_with('#') ? "" : code)) return "";
    const std::string head = std::exchange(scanner.head, "");
    return scanner.lines > kMostFunctionLines ? std::to_string(scanner.lines) + " lines: " + head : "";
  });
}

Findings OutsideReferences(const SourceFile& file) {
  const auto toLower = [](std::string text) {
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
  };
  return CheckLines(file, [&](const std::string& line, const std::string& code) -> std::string {
    const std::string text = toLower(line);
    // A name in the code may be any word.
    if (std::regex_search(text, kPaper) && !std::regex_search(toLower(code), kPaper))
      return "refers to a paper";
    return std::regex_search(text, kNumberedPart) ? "refers to a numbered part of something" : "";
  });
}

}  // namespace tests
