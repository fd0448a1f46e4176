#include "calendar/calendar_opening.h"

#include "core/file_messages.h"
#include "core/ini_file.h"
#include "platform/system/file.h"

namespace {

// Why nothing was chosen where the choice itself has nothing to say.
std::string DescribeNoChoice() {
  std::string path;
  if (core::IniFile().ReadString("Preference", "DefaulFile", path)) {
    return core::DescribeOpenError(path, core::OpenError::kMissing);
  }
  return "The settings name no calendar, but there is one already:\r\n\"" + core::DefaultCalendarPath() +
         "\"";
}

}  // namespace

core::OpenedCalendar OpenStartupCalendar(const std::string& commandLineFile) {
  // A file that the user named is the one that is meant: no other takes its place.
  if (!commandLineFile.empty() && !platform::FileExists(commandLineFile)) {
    return {nullptr, core::DescribeOpenError(commandLineFile, core::OpenError::kMissing)};
  }
  const core::StartupChoice choice = core::ChooseStartupFile(commandLineFile, nullptr);
  if (choice.chosen) return core::OpenCalendarFile(choice.path, choice.password, choice.withExamples);
  return {nullptr, choice.message.empty() ? DescribeNoChoice() : choice.message};
}
