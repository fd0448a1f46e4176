#include "unit/core/program_folder.h"

#include <cstdlib>

namespace tests {
namespace {

// DAYBRIX_FOLDER is looked at once in a process, so it must stand before the first test runs.
const bool kChosen = setenv("DAYBRIX_FOLDER", ProgramFolder().Path().c_str(), 1) == 0;

}  // namespace

const TemporaryFolder& ProgramFolder() {
  static const TemporaryFolder folder;
  return folder;
}

}  // namespace tests
