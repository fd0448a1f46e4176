// tempoline-cli: calendars on the command line.
#include "cli/cli.h"
#include "platform/system/file.h"
#include "platform/system/lock_file.h"
#include "platform/system/standard_streams.h"

int main(int argc, char** argv) {
  platform::PrepareStandardStreams();
  platform::LetWritesBeyondLimitsFail();
  // No window stands still meanwhile: what a machine that died has locked comes free in that time.
  platform::SetGuardPatience(platform::kAbandonedMs + 2000);
  return cli::RunCommandLine({argv + (argc > 0 ? 1 : 0), argv + argc}, platform::WriteStandardOutput,
                             platform::WriteStandardError);
}
