// The fields of an appointment that go in and out as text, in the order of an exported line.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>

#include "core/calendar/appointment.h"

namespace core {

// How a text becomes a field.
enum class ExchangeKind { kNumber = 2, kDate = 4, kTime = 5, kText = 6 };

struct ExchangeField {
  std::string_view name;  // in the header line
  ExchangeKind kind;
  std::size_t offset;  // in the Appointment, bytes
  std::size_t size;
};

inline constexpr std::array<ExchangeField, 7> kExchangeFields{{
    {"Date", ExchangeKind::kDate, offsetof(Appointment, date), sizeof(Appointment::date)},
    {"Start Time", ExchangeKind::kTime, offsetof(Appointment, startTime), sizeof(Appointment::startTime)},
    {"End Time", ExchangeKind::kTime, offsetof(Appointment, endTime), sizeof(Appointment::endTime)},
    {"Category", ExchangeKind::kText, offsetof(RecordHeader, category), sizeof(RecordHeader::category)},
    {"All day event", ExchangeKind::kNumber, offsetof(Appointment, allDay), sizeof(Appointment::allDay)},
    {"Subject", ExchangeKind::kText, offsetof(Appointment, subject), sizeof(Appointment::subject)},
    {"Notes", ExchangeKind::kText, offsetof(Appointment, notes), sizeof(Appointment::notes)},
}};

// Told now and then how much of the work is done; both numbers are of the same, whatever they count. The work
// stops when it answers false.
using ExchangeProgress = std::function<bool(std::int64_t done, std::int64_t whole)>;

}  // namespace core
