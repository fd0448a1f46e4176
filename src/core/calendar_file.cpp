#include "core/calendar_file.h"

#include <array>
#include <utility>

#include "core/appointment.h"
#include "core/categories.h"
#include "core/file_messages.h"
#include "core/ini_file.h"
#include "core/value_compare.h"
#include "platform/system/file.h"
#include "platform/system/program_folder.h"
#include "resources/strings.h"

namespace core {
namespace {

constexpr int kWrongPasswordText = 103;
constexpr int kCannotCreateText = 114;

std::string TextOf(int id) {
  return resources::FindText(id);
}

// False when there is no file at the path in the end. One that another copy made meanwhile will do.
bool CreateCalendar(const std::string& path, bool withExamples) {
  HeaderBlock header;
  InitHeaderBlock(header, kCalendarKind.kind, kCalendarKind.kindDetail, 1);
  std::array<Appointment, 3> examples{};
  std::string_view slots;
  if (withExamples) {
    examples = ExampleAppointments(header);
    slots = {reinterpret_cast<const char*>(examples.data()), sizeof examples};
    header.changeCounter += examples.size();  // as if each had been added
  }
  RecordFile file(path, "");
  return file.CreateNew(header, DefaultCategories(), kCalendarKind.slotSize, slots) ||
         platform::FileExists(path);
}

// Writes the default file into the settings. Nothing is chosen when a file is there that the settings did not
// know.
StartupChoice ChooseDefaultFile(const IniFile& settings) {
  StartupChoice choice;
  choice.path = DefaultCalendarPath();
  platform::MakeFolder(choice.path.substr(0, choice.path.rfind('/')));
  if (platform::FileExists(choice.path)) return {};
  settings.WriteString("Preference", "DefaulFile", choice.path);
  settings.WriteString("Preference", "RecordExample", "1");
  choice.withExamples = true;
  choice.chosen = true;
  return choice;
}

}  // namespace

StartupChoice ChooseStartupFile(const std::string& commandLine, const PasswordPrompt& askPassword) {
  const IniFile settings;
  StartupChoice choice;
  if (!commandLine.empty() && platform::FileExists(commandLine)) {
    choice.path = commandLine;
  } else if (!settings.ReadString("Preference", "DefaulFile", choice.path)) {
    return ChooseDefaultFile(settings);
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
    const RecordFile file(path, "");
    if (file.OpenFailed() || !file.ReadHeaderBlock(header)) {
      message = DescribeOpenError(path, file.OpenFailed() ? file.LastOpenError() : OpenError::kFailed);
      return false;
    }
  }
  if (ReadText(header.ownerPassword).empty()) return true;
  std::string typed;
  if (!askPassword || !askPassword(path, typed) || LevelOf(typed, header) == Access::kNone) {
    message = TextOf(kWrongPasswordText);
    return false;
  }
  password = std::move(typed);
  return true;
}

std::string DefaultCalendarPath() {
  std::string name = platform::ExecutableBaseName();
  for (char& c : name) c = static_cast<char>(FoldCase(static_cast<unsigned char>(c)));
  return ModuleFolder() + "/works/" + name + ".cld";
}

OpenedCalendar OpenCalendarFile(const std::string& path, const std::string& password, bool withExamples,
                                const CompactionWatcher& watcher) {
  if (!platform::FileExists(path) && !CreateCalendar(path, withExamples)) {
    return {nullptr, TextOf(kCannotCreateText) + "\r\n\"" + path + "\""};
  }
  const RepairOutcome repair = RepairCheck(path, false, watcher);
  auto file = std::make_unique<RecordFile>(path, password);
  if (file->OpenFailed()) return {nullptr, DescribeOpenError(path, file->LastOpenError())};
  if (file->SlotSize() != kCalendarKind.slotSize)
    return {nullptr, CannotOpenText(path, "It is not a calendar.")};
  return {std::move(file), repair.message};
}

}  // namespace core
