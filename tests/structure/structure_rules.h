// The rules that docs/architecture.md promises of the tree. Each looks at files as text, so that a test can
// show it a made-up one that breaks it. A finding reads "path:line: what is wrong"; no finding is a kept
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

// Includes in src/ that point at another folder of the same floor, at a higher floor or wing or at none.
Findings UpwardIncludes(const SourceFile& file);

// Files of src/ that include each other in a circle, or lead to one; a header and its source count as one.
// The two platform layers are left out: each is one thing seen from several sides, in which a message that is
// sent or a lock that is taken may end anywhere.
Findings IncludeCircles(const std::vector<SourceFile>& files);

// Qt outside src/platform/desktop and the tests' driver, and in the headers that the layer offers.
Findings StrayQt(const SourceFile& file);

// Clocks and files that src/ uses past platform/system.
Findings StrayClocksAndFiles(const SourceFile& file);

inline constexpr std::size_t kMostFileLines = 600;
inline constexpr std::size_t kMostFunctionLines = 80;
Findings OverlongFile(const SourceFile& file);

// Lengths count from the line on which the body opens to the closing brace.
Findings OverlongFunctions(const SourceFile& file);

// Texts that send their reader to a paper that is not in the project, where they should give the reason
// itself.
Findings OutsideReferences(const SourceFile& file);

}  // namespace tests
