// The push button of a dialog that shows a time, or a start and an end, and has others picked.
#pragma once

#include <optional>

#include "framework/dialog_items.h"
#include "pickers/time_range.h"

class TimeButton : public TextItem {
 public:
  using TextItem::TextItem;

  void Show(const core::TimeOfDay& time) const;
  void Show(const TimeRange& range) const;
  // Opens the time picker below the button; what the user accepted. The button goes on showing what it
  // showed.
  [[nodiscard]] std::optional<core::TimeOfDay> Pick(const core::TimeOfDay& start) const;
  [[nodiscard]] std::optional<TimeRange> Pick(const TimeRange& start) const;
};
