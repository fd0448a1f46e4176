// A calendar file in a folder of its own for one test, and a way to spell appointments.
//
//   TemporaryCalendar calendar;
//   const std::int32_t offset = calendar.Add(Entry("Dentist").On(14, 3, 2004).At(10, 30).Every(1,
//   kRepeatDaily));
#pragma once

#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "core/calendar/appointment.h"
#include "core/calendar/categories.h"
#include "support/temporary_folder.h"

namespace tests {

// An appointment of 1 March 2004, 9:00 to 9:00, until told otherwise.
class Entry {
 public:
  explicit Entry(std::string_view subject = "") {
    core::HeaderBlock header;
    std::memset(&header, 0, sizeof header);
    core::InitRecordHeader(appointment.header, sizeof appointment, header);
    core::WriteText(appointment.subject, subject);
    On(1, 3, 2004).At(9, 0);
  }

  Entry& On(int day, int month, int year) {
    appointment.date = {day, month, year};
    return *this;
  }
  // `hour` 0..23.
  Entry& At(int hour, int minute) {
    appointment.startTime = {hour % 12, minute, 0, hour < 12 ? core::kBeforeNoon : core::kAfterNoon};
    appointment.endTime = appointment.startTime;
    return *this;
  }
  Entry& AllDay() {
    appointment.allDay = 1;
    return *this;
  }
  Entry& Category(std::string_view name) {
    core::WriteText(appointment.header.category, name);
    return *this;
  }
  Entry& Notes(std::string_view text) {
    core::WriteText(appointment.notes, text);
    return *this;
  }
  Entry& Confidential() {
    appointment.header.confidential = 1;
    return *this;
  }
  Entry& Every(std::uint32_t every, core::RepeatType type, std::uint32_t param = 0) {
    appointment.repeat = {type, core::kNoEndDate, every, param};
    return *this;
  }
  Entry& Until(int day, int month, int year) {
    appointment.repeat.repeatEnd = {day, month, year};
    return *this;
  }

  core::Appointment appointment{};
};

class TemporaryCalendar {
 public:
  struct Passwords {
    std::string_view owner;
    std::string_view assistant;
    std::string_view reader;
  };

  TemporaryCalendar() : TemporaryCalendar(Passwords{}) {}
  explicit TemporaryCalendar(const Passwords& passwords)
      : file(folder.Join("calendar.cld"), passwords.owner) {
    core::HeaderBlock header;
    core::InitHeaderBlock(header, "Calendar", "Organizer", 1);
    core::WriteText(header.ownerPassword, passwords.owner);
    core::WriteText(header.assistantPassword, passwords.assistant);
    core::WriteText(header.readerPassword, passwords.reader);
    if (!file.Create(header, core::DefaultCategories(), 2627)) std::abort();
  }

  const std::string& Path() const { return file.Path(); }
  const std::string& Folder() const { return folder.Path(); }
  std::string Bytes() const { return folder.Read("calendar.cld"); }

  // Adds at the end and answers the offset.
  std::int32_t Add(const Entry& entry) {
    const auto offset = static_cast<std::int32_t>(file.SlotsEnd());
    if (file.AddRecord(&entry.appointment) != core::Result::kDone) std::abort();
    return offset;
  }

  // The slot at an offset, whatever is in it.
  core::Appointment Slot(std::int32_t offset) const {
    core::Appointment slot{};
    if (!file.ReadSlot(&slot, offset)) std::abort();
    return slot;
  }

  core::HeaderBlock Header() const {
    core::HeaderBlock header;
    if (!file.ReadHeaderBlock(header)) std::abort();
    return header;
  }

 private:
  TemporaryFolder folder;

 public:
  core::RecordFile file;  // open at the Owner level
};

// A field of a stored structure by value. Expectations take references, which want an alignment that such a
// field does not have.
template <typename T>
T Value(T field) {
  return field;
}

// A list of every record of a file, in the file's order; empty when it cannot be listed.
inline core::RecordQuery AllRecords(const core::RecordFile& file) {
  core::RecordQuery query;
  query.AddMatchAll();
  static_cast<void>(query.Run(file));
  return query;
}

// The subjects of a list, in its order.
inline std::vector<std::string> Subjects(const core::RecordFile& file, const core::RecordList& query) {
  std::vector<std::string> subjects;
  for (const core::RecordKey& key : query.Keys()) {
    core::Appointment appointment;
    const bool read = file.ReadRecord(&appointment, key);
    subjects.emplace_back(read ? core::ReadText(appointment.subject) : "(gone)");
  }
  return subjects;
}

}  // namespace tests
