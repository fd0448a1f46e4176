#include "core/calendar/calendar_opening.h"

#include "core/ini_file.h"
#include "core/store/file_messages.h"
#include "platform/system/file.h"

namespace core {
namespace {

// Why nothing was chosen where the choice itself has nothing to say.
std::string DescribeNoChoice() {
  std::string path;
  if (IniFile().ReadString("Preference", "DefaulFile", path)) {
    return "The calendar " + Quoted(path) + " does not exist.";
  }
  return "The calendar " + Quoted(DefaultCalendarPath()) + " exists already.";
}

}  // namespace

std::string DescribeMissingFile(const std::string& commandLineFile) {
  if (commandLineFile.empty() || platform::FileExists(commandLineFile)) return "";
  return DescribeOpenError(commandLineFile, OpenError::kMissing);
}

StartupCalendar OpenStartupCalendar(const std::string& commandLineFile, const PasswordPrompt& askPassword,
                                    const CompactionWatcher& watcher) {
  StartupChoice choice = ChooseStartupFile(commandLineFile, askPassword);
  if (choice.chosen) {
    OpenedCalendar opened = OpenCalendarFile(choice.path, choice.password, choice.withExamples, watcher);
    if (!choice.message.empty()) opened.message.append(opened.message.empty() ? "" : "\r\n\r\n");
    opened.message += choice.message;
    return {std::move(opened), ""};
  }
  std::string note = choice.message.empty() ? DescribeNoChoice() : "";
  return {{nullptr, std::move(choice.message)}, std::move(note)};
}

}  // namespace core
