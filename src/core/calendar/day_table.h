// What of a calendar decides on which days its appointments fall and when their alarms ring: some tens of
// bytes a record, made by one pass over the file and kept beside it, so that walking through days, months and
// categories reads next to nothing while nobody writes.
//
//   const DayTable* table = DayTable::Of(file);
//   if (table != nullptr) days = table->Days(first, 7, std::nullopt);
//
// Each Of looks at the file anew, and only a file that is the same one, as long, last changed at the same
// instant and counts the same changes is not read again. What is drawn is read from the file by its key.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "core/calendar/appointment.h"

namespace core {

class DayTable final : public RecordFile::Kept {
 public:
  // The table of the open calendar as the file is now; good until the next call for this file. Null when
  // there is no memory, the file is closed or no calendar, or its password allows nothing.
  static const DayTable* Of(const RecordFile& file);

  // False when a part of the file could not be read: its records are missing.
  bool IsWhole() const { return whole; }
  // The change counter that it stands for.
  std::uint64_t Counter() const { return counter; }

  // For each of `count` days (1..kMostOccurrenceDays) from `first` on the appointments that fall on it and
  // that the password shows, in kDayOrder and then as in the file. With a category only its appointments,
  // without regard to the case of ASCII letters; an empty one is that of those that have none.
  std::vector<std::vector<RecordKey>> Days(const Date& first, int count,
                                           std::optional<std::string_view> category) const;

  // Bytes of the longest name of a category that a record of the file has.
  std::size_t LongestCategory() const { return longestCategory; }

  // The fields of an appointment with an alarm that is on from which RingMoment comes.
  struct Alarm {
    RecordKey record;
    Date date;
    Date alarmDate;
    TimeOfDay alarmTime;
    std::int32_t alarmDaysBefore;
    bool repeats;
    bool confidential;
  };
  // Calls `visit` with each that the password shows, in file order.
  void VisitAlarms(const std::function<void(const Alarm& alarm)>& visit) const;

 private:
  struct Entry {
    RecordKey record;
    std::uint16_t order;  // kDayOrder's key
    bool confidential;
    char category[sizeof(RecordHeader::category)];
  };
  struct Repeating {
    Entry entry;
    Date date;
    RepeatRule rule;
  };

  bool Look(const RecordFile& file);
  bool Make(const RecordFile& file);
  void Add(const Appointment& appointment, std::int32_t offset);
  bool Shows(bool confidential) const { return !confidential || level == Access::kOwner; }

  // In file order; entry k of `single` falls on the stored day number k of `singleDays`, -1 for no date.
  std::vector<int> singleDays;
  std::vector<Entry> single;
  std::vector<Repeating> repeating;
  std::vector<Alarm> alarms;
  std::size_t longestCategory = 0;
  bool whole = false;

  // What proves it: the file as it was before the pass.
  platform::FileState state;
  std::uint64_t counter = 0;
  std::int64_t seenSince = 0;  // platform::TickMs of the first look that found it so
  bool proven = false;
  Access level = Access::kNone;  // of the last look
};

}  // namespace core
