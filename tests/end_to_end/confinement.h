// Keeps a process, and all that it starts, in a folder: it may read everything, but create, change and delete
// files only there, and reaches no network.
#pragma once

#include <string>

namespace tests {

// Whether this machine's kernel can do it.
bool CanConfine();
// Confines the calling process for good; false when that failed.
bool ConfineTo(const std::string& folder);

}  // namespace tests
