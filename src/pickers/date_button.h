// The push button of a dialog that shows a date and has another one picked.
#pragma once

#include <optional>

#include "core/date_time.h"
#include "framework/dialog_items.h"

class DateButton : public TextItem {
 public:
  using TextItem::TextItem;

  void Show(const core::Date& date) const;
  // Opens the date picker below the button; the date that the user accepted. The button goes on showing the
  // old one: whether the picked one is taken is the dialog's to say.
  [[nodiscard]] std::optional<core::Date> Pick(const core::Date& start) const;
};
