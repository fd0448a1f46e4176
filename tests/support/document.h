// The worked examples of the documents, so that tests hold them true.
#pragma once

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/source_folder.h"

namespace tests {

// The lines of a document in docs/.
inline std::vector<std::string> DocumentLines(const std::string& name) {
  std::ifstream document(SourceFolder() + "/docs/" + name);
  std::vector<std::string> lines;
  for (std::string line; std::getline(document, line);) lines.push_back(line);
  return lines;
}

// The rows of the block that begins with this line, "offset: bytes", put where they say into `size` bytes;
// all else is zero.
inline std::string DocumentedBytes(const std::string& name, const std::string& block, std::size_t size) {
  std::string bytes(size, '\0');
  bool inside = false;
  for (const std::string& line : DocumentLines(name)) {
    if (line.starts_with("```")) inside = line == "```" + block;
    if (!inside || line.starts_with("```")) continue;
    std::istringstream row(line.substr(0, line.find('|')));
    std::size_t offset = 0;
    char colon = 0;
    row >> std::hex >> offset >> colon;
    for (unsigned byte = 0; row >> byte; ++offset) bytes.at(offset) = static_cast<char>(byte);
  }
  return bytes;
}

}  // namespace tests
