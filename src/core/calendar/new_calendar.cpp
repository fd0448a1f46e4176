#include "core/calendar/new_calendar.h"

#include <array>
#include <string_view>

#include "core/calendar/appointment.h"
#include "core/calendar/categories.h"
#include "core/ini_file.h"
#include "core/store/file_messages.h"

namespace core {
namespace {

constexpr std::string_view kSection = "Preference";
constexpr std::string_view kFileKey = "DefaulFile";
constexpr std::string_view kExamplesKey = "RecordExample";

std::string Remember(std::string_view key, std::string_view value) {
  const IniFile settings;
  if (settings.WriteString(kSection, key, value)) return "";
  return "Can't write to " + Quoted(settings.Path()) + ".\r\nThe next start will not know your choice.";
}

}  // namespace

std::string WorksFolder() {
  std::string folder = ModuleFolder() + "/works";
  platform::MakeFolder(folder);
  return folder;
}

std::string NewCalendarPath(const std::string& folder, const std::string& name) {
  return platform::FullPath(folder + "/" + name + ".cld");
}

platform::FileResult CreateCalendar(const std::string& path, bool withExamples) {
  if (platform::FileExists(path)) return platform::FileResult::kExists;
  HeaderBlock header;
  InitHeaderBlock(header, kCalendarKind.kind, kCalendarKind.kindDetail, 1);
  std::array<Appointment, 3> examples{};
  std::string_view slots;
  if (withExamples) {
    examples = ExampleAppointments(header);
    slots = {reinterpret_cast<const char*>(examples.data()), sizeof examples};
    header.changeCounter += examples.size();  // as if each had been added
  }
  const std::string image = NewFileImage(header, DefaultCategories(), kCalendarKind.slotSize, slots);
  return platform::WriteNewFile(path, image.data(), image.size());
}

std::string RememberCalendar(const std::string& path) {
  return Remember(kFileKey, path);
}

bool ExamplesWanted() {
  std::string value;
  return !IniFile().ReadString(kSection, kExamplesKey, value) || value == "1";
}

std::string RememberExamples(bool wanted) {
  return Remember(kExamplesKey, wanted ? "1" : "0");
}

}  // namespace core
