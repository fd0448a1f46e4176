// Appointments as the events of an iCalendar text (RFC 5545), in UTF-8: what other programs read.
//
//   IcalWriter writer;
//   writer.PutHead(text);
//   const bool put = writer.PutEvent(record, key, text);
//   writer.PutTail(text);
//
// An event holds what any calendar can show: its times, without a time zone, its rule, texts, category,
// alarm and attachment. The alarm's tone and what it opens stay at home, and so do participants.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/calendar/appointment.h"

namespace core {

// Whether the name of a file ends as those of iCalendar files do, in upper or lower case.
bool IsIcalName(std::string_view path);

// What stands behind the record's id in the UID of an exported event.
inline constexpr std::string_view kIcalUidEnd = "@tempoline.daybrix";

class IcalWriter {
 public:
  // Events are stamped with the moment at which the writer is made.
  IcalWriter();

  // To be told of every record of the file, in its order: where a damaged one has an id several times, the
  // later records get UIDs of their own.
  void Meet(const RecordKey& key);

  // Each adds whole lines to `text`.
  void PutHead(std::string& text) const;
  void PutTail(std::string& text) const;
  // False, with nothing added, for an appointment that falls on no day of the calendar. A time that is none
  // makes it an event of the whole day, and an end before the start one that ends where it begins.
  [[nodiscard]] bool PutEvent(const Appointment& record, const RecordKey& key, std::string& text) const;

 private:
  std::string stamp;
  std::unordered_map<std::uint64_t, unsigned> met;    // how often each id has come
  std::unordered_map<std::int32_t, unsigned> copies;  // 2 for the second record with its id, ..., by offset
};

}  // namespace core
