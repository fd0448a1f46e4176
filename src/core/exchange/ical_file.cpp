#include "core/exchange/ical_file.h"

#include <utility>

#include "core/calendar/alarm_schedule.h"
#include "core/calendar/categories.h"
#include "core/exchange/import_reader.h"
#include "core/store/file_messages.h"

namespace core {

std::string ReadIcalFile(const std::string& path, const RecordFile& calendar, std::string& text) {
  platform::File file;
  std::string message = OpenImportFile(path, &calendar, file);
  if (!message.empty()) return message;
  const std::int64_t size = file.Size();
  if (size > static_cast<std::int64_t>(kMostIcalBytes)) {
    return CannotOpenText(path, "It is longer than 64 MB.");
  }
  text.resize(size > 0 ? static_cast<std::size_t>(size) : 0);
  const std::int64_t read = size < 0 ? -1 : file.ReadAt(text.data(), text.size(), 0);
  text.resize(read > 0 ? static_cast<std::size_t>(read) : 0);  // somebody may have cut it meanwhile
  return read < 0 ? CannotOpenText(path, "Reading it failed.") : "";
}

IcalReadOptions ReadOptionsFor(const RecordFile& calendar, std::string zone) {
  IcalReadOptions options;
  options.zone = std::move(zone);
  options.now = AlarmNow();
  // Without the list the first name of an event's counts.
  CategoryList categories;
  if (ReadCategories(calendar, categories)) options.categories = std::move(categories.names);
  options.mayBeConfidential = calendar.AccessLevel() == Access::kOwner;
  return options;
}

}  // namespace core
