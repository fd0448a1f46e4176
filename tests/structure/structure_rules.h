// The rules that docs/architecture.md promises of the tree. Each looks at one file as text, so that a test
// can show it a made-up file that breaks it. A finding reads "path:line: what is wrong"; no finding is a kept
// rule.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tests {

struct SourceFile {
  std::string path;  // from the project's folder, with slashes
  std::string text;
};

using Findings = std::vector<std::string>;

// Every text file of the project, but for what .gitignore names.
std::vector<SourceFile> ReadProject(const std::string& folder);

// Includes in src/ that point at another folder of the same floor, at a higher floor or at none.
Findings UpwardIncludes(const SourceFile& file);

// Qt outside src/platform/desktop and the tests' driver, and in the headers that the layer offers.
Findings StrayQt(const SourceFile& file);

// Clocks and files that src/ uses past platform/system.
Findings StrayClocksAndFiles(const SourceFile& file);

inline constexpr std::size_t kMostFileLines = 600;
inline constexpr std::size_t kMostFunctionLines = 80;
Findings OverlongFile(const SourceFile& file);

// A function that may be longer, told by a piece of the line on which its body opens, and why it may.
struct LongFunction {
  std::string path;
  std::string head;
  std::string reason;
};
// Lengths count from that line to the closing brace. An exception for a function that is short is a finding
// too.
Findings OverlongFunctions(const SourceFile& file, const std::vector<LongFunction>& exceptions);

// Texts that send their reader to a paper that is not in the project, where they should give the reason
// itself.
Findings OutsideReferences(const SourceFile& file);

}  // namespace tests
