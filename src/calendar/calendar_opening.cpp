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

StartupCalendar OpenStartupCalendar(const std::string& commandLineFile,
                                    const core::PasswordPrompt& askPassword,
                                    const core::CompactionWatcher& watcher) {
  // A file that the user named is the one that is meant: no other takes its place.
  if (!commandLineFile.empty() && !platform::FileExists(commandLineFile)) {
    return {{nullptr, core::DescribeOpenError(commandLineFile, core::OpenError::kMissing)}, ""};
  }
  core::StartupChoice choice = core::ChooseStartupFile(commandLineFile, askPassword);
  if (choice.chosen)
    return {core::OpenCalendarFile(choice.path, choice.password, choice.withExamples, watcher), ""};
  std::string note = choice.message.empty() ? DescribeNoChoice() : "";
  return {{nullptr, std::move(choice.message)}, std::move(note)};
}
