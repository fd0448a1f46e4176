// Prints what the program's folders are for an executable that lies where this one was put.
#include <cstdio>

#include "platform/system/program_folder.h"

int main() {
  std::printf("%s\n%s\n%s\n%s\n", platform::ExecutablePath().c_str(), platform::ExecutableBaseName().c_str(),
              platform::ProgramFolder().c_str(), platform::SharedFilePath("help.html").c_str());
  return 0;
}
