#include "core/calendar/calendar_file.h"

#include <utility>

#include "core/calendar/new_calendar.h"
#include "core/ini_file.h"
#include "core/store/file_messages.h"
#include "core/store/value_compare.h"
#include "platform/system/file.h"
#include "platform/system/program_folder.h"
#include "resources/strings.h"
#include "resources/text_ids.h"

namespace core {
namespace {

std::string TextOf(int id) {
  return resources::FindText(id);
}

bool IsCalendar(const RecordFile& file) {
  return !file.OpenFailed() && file.SlotSize() == kCalendarKind.slotSize;
}

// Writes the default file into the settings. Nothing is chosen when a file is there that the settings did not
// know.
StartupChoice ChooseDefaultFile() {
  StartupChoice choice;
  choice.path = DefaultCalendarPath();
  if (platform::FileExists(choice.path)) return {};
  choice.message = RememberCalendar(choice.path);
  if (choice.message.empty()) choice.message = RememberExamples(true);
  choice.withExamples = true;
  choice.chosen = true;
  return choice;
}

}  // namespace

StartupChoice ChooseStartupFile(const std::string& commandLine, const PasswordPrompt& askPassword) {
  StartupChoice choice;
  if (!commandLine.empty() && platform::FileExists(commandLine)) {
    choice.path = commandLine;
  } else if (!IniFile().ReadString("Preference", "DefaulFile", choice.path)) {
    return ChooseDefaultFile();
  } else if (!platform::FileExists(choice.path)) {
    return {};
  }
  choice.chosen = AskFilePassword(choice.path, askPassword, choice.password, choice.message);
  return choice;
}

bool AskFilePassword(const std::string& path, const PasswordPrompt& askPassword, std::string& password,
                     std::string& message) {
  password.clear();
  message.clear();
  HeaderBlock header;
  {
    // To look at it is no use of it: nothing is counted, written or brought to the disk.
    const RecordFile file(path, "", OpenMode::kReadOnly);
    if (file.OpenFailed() || !file.ReadHeaderBlock(header)) {
      message = DescribeOpenError(path, file.OpenFailed() ? file.LastOpenError() : OpenError::kFailed);
      return false;
    }
  }
  if (ReadText(header.ownerPassword).empty()) return true;
  std::string typed;
  if (!askPassword || !askPassword(path, typed) || LevelOf(typed, header) == Access::kNone) {
    message = TextOf(text::kWrongPassword);
    return false;
  }
  password = std::move(typed);
  return true;
}

std::string DefaultCalendarPath() {
  std::string name = platform::ExecutableBaseName();
  for (char& c : name) c = static_cast<char>(FoldCase(static_cast<unsigned char>(c)));
  return WorksFolder() + "/" + name + ".cld";
}

OpenedCalendar OpenCalendarFile(const std::string& path, const std::string& password, bool withExamples,
                                const CompactionWatcher& watcher) {
  // A file that another copy made meanwhile will do.
  const platform::FileResult made =
      platform::FileExists(path) ? platform::FileResult::kExists : CreateCalendar(path, withExamples);
  if (made != platform::FileResult::kDone && made != platform::FileResult::kExists) {
    return {nullptr, CannotCreateText(made) + "\r\n" + Quoted(path), OpenError::kFailed};
  }
  OpenedCalendar opened = OpenExistingCalendar(path, password, watcher);
  if (opened.error == OpenError::kDenied) {
    auto file = std::make_unique<RecordFile>(path, password, OpenMode::kAsReader);
    if (IsCalendar(*file)) return {std::move(file), OpenAsReaderText(path), OpenError::kNone};
  }
  return opened;
}

OpenedCalendar OpenExistingCalendar(const std::string& path, const std::string& password,
                                    const CompactionWatcher& watcher) {
  const RepairOutcome repair = RepairCheck(path, false, watcher);
  auto file = std::make_unique<RecordFile>(path, password);
  if (const OpenError error = file->LastOpenError(); error != OpenError::kNone) {
    return {nullptr, DescribeOpenError(path, error), error};
  }
  if (!IsCalendar(*file)) return {nullptr, CannotOpenText(path, "It is not a calendar."), OpenError::kNone};
  return {std::move(file), repair.message, OpenError::kNone};
}

}  // namespace core
