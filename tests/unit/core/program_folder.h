// The program folder of this test program: a temporary one, set before anything asks for it.
#pragma once

#include "support/temporary_folder.h"

namespace tests {

const TemporaryFolder& ProgramFolder();

}  // namespace tests
