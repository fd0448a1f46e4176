// Where the project's own files lie that tests read: samples, documents, pictures.
#pragma once

#include <string>

namespace tests {

// The root of the source tree, without a slash at its end.
std::string SourceFolder();

}  // namespace tests
