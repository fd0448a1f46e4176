#include "support/source_folder.h"

namespace tests {

std::string SourceFolder() {
  return DAYBRIX_SOURCE_FOLDER;
}

}  // namespace tests
