// A date in one message word, so that a message that is posted needs nothing that has to live until it
// arrives.
#pragma once

#include "core/date_time.h"
#include "platform/desktop/types.h"

// Any date that has a day number.
constexpr LPARAM WordFromDate(const core::Date& date) {
  return static_cast<LPARAM>(date.year) << 16 | date.month << 8 | date.day;
}

constexpr core::Date DateFromWord(LPARAM word) {
  return {static_cast<std::int32_t>(word & 0xFF), static_cast<std::int32_t>(word >> 8 & 0xFF),
          static_cast<std::int32_t>(word >> 16 & 0xFFFF)};
}
