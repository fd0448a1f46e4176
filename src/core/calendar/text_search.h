// The appointments whose subject or notes contain a text: what Find shows. One that repeats is found once.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/calendar/appointment.h"
#include "core/store/record_list.h"

namespace core {

// Whether an appointment's subject or notes contain a text, without regard to the case of ASCII letters.
class TextFilter {
 public:
  // More bytes of a text are not looked for.
  static constexpr std::size_t kMostText = 499;

  // Every appointment contains an empty text.
  explicit TextFilter(std::string_view text);

  bool Matches(const Appointment& appointment) const;

 private:
  std::string wanted;  // in lower case
};

// Whether it is of the category, compared in the same way; an empty one is that of those that have none.
bool IsOfCategory(const Appointment& appointment, const std::string& category);

class TextSearch final : public RecordList {
 public:
  // Lists them by date and start time, the first kMostRecords of the file; with a category only its
  // appointments. False, with the list empty, when there is no memory, the file is closed or no calendar, or
  // its password allows nothing. A part of the file that cannot be read is passed over (IsWhole).
  [[nodiscard]] bool Run(const RecordFile& file, std::string_view text, std::string_view category = {});
  // Lists nothing, and has nothing to refresh.
  void Clear() { *this = TextSearch(); }

  const std::vector<RecordKey>& Keys() const override { return keys; }

 private:
  bool CanRebuild() const override { return filter.has_value(); }
  bool Rebuild(const RecordFile& file) override;

  // What was asked for last.
  std::optional<TextFilter> filter;
  std::string wantedCategory;
  std::vector<RecordKey> keys;
};

}  // namespace core
