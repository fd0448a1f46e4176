#include "calendar/calendar_opening.h"

#include "core/file_messages.h"
#include "core/ini_file.h"
#include "platform/system/file.h"

namespace {

// Why nothing was chosen where the choice itself has nothing to say.
std::string DescribeNoChoice() {
  std::string path;
  if (core::IniFile().ReadString("Preference", "DefaulFile", path)) {
    return "The calendar " + core::Quoted(path) + " does not exist.";
  }
  return "There is a calendar already: " + core::Quoted(core::DefaultCalendarPath());
}

}  // namespace

std::string DescribeMissingFile(const std::string& commandLineFile) {
  if (commandLineFile.empty() || platform::FileExists(commandLineFile)) return "";
  return core::DescribeOpenError(commandLineFile, core::OpenError::kMissing);
}

StartupCalendar OpenStartupCalendar(const std::string& commandLineFile,
                                    const core::PasswordPrompt& askPassword,
                                    const core::CompactionWatcher& watcher) {
  core::StartupChoice choice = core::ChooseStartupFile(commandLineFile, askPassword);
  if (choice.chosen)
    return {core::OpenCalendarFile(choice.path, choice.password, choice.withExamples, watcher), ""};
  std::string note = choice.message.empty() ? DescribeNoChoice() : "";
  return {{nullptr, std::move(choice.message)}, std::move(note)};
}
