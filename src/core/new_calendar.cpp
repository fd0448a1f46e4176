#include "core/new_calendar.h"

#include <array>
#include <string_view>

#include "core/appointment.h"
#include "core/categories.h"
#include "core/ini_file.h"
#include "core/record_file.h"
#include "platform/system/file.h"

namespace core {
namespace {

constexpr std::string_view kSection = "Preference";
constexpr std::string_view kFileKey = "DefaulFile";
constexpr std::string_view kExamplesKey = "RecordExample";

}  // namespace

std::string WorksFolder() {
  std::string folder = ModuleFolder() + "/works";
  platform::MakeFolder(folder);
  return folder;
}

std::string NewCalendarPath(const std::string& folder, const std::string& name) {
  return platform::FullPath(folder + "/" + name + ".cld");
}

NewCalendar CreateCalendar(const std::string& path, bool withExamples) {
  if (platform::FileExists(path)) return NewCalendar::kExists;
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
  if (file.CreateNew(header, DefaultCategories(), kCalendarKind.slotSize, slots)) return NewCalendar::kMade;
  return platform::FileExists(path) ? NewCalendar::kExists : NewCalendar::kFailed;
}

void RememberCalendar(const std::string& path) {
  IniFile().WriteString(kSection, kFileKey, path);
}

bool ExamplesWanted() {
  std::string value;
  return !IniFile().ReadString(kSection, kExamplesKey, value) || value == "1";
}

void RememberExamples(bool wanted) {
  IniFile().WriteString(kSection, kExamplesKey, wanted ? "1" : "0");
}

}  // namespace core
