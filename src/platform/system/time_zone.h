// Time zones: what the wall clock shows at a moment, and which moment a wall clock means. They come from the
// machine's zone database, from TZ, or from changes that somebody else has found out.
//
// Moments are seconds since 2000-01-01T00:00:00 UTC; wall clocks the same seconds since their own
// 2000-01-01T00:00:00.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace platform {

class TimeZone {
 public:
  // From the moment on the wall clock is so many seconds ahead of UTC.
  struct Change {
    std::int64_t moment;
    std::int32_t offset;
  };

  // The zone whose wall clock is UTC.
  TimeZone() = default;
  // `changes` in ascending order; before the first of them the wall clock is `offset` seconds ahead of UTC.
  TimeZone(std::int32_t offset, std::vector<Change> changes);

  // The zone that the database has under the name, such as "Europe/Berlin", up to the year 2100. Nothing when
  // it has none.
  static std::optional<TimeZone> Named(std::string_view name);
  // The zone of this process, by TZ or the machine's choice; UTC when neither can be read.
  static TimeZone OfProcess();

  std::int32_t OffsetAt(std::int64_t moment) const;
  std::int64_t WallAt(std::int64_t moment) const { return moment + OffsetAt(moment); }
  // The first of two moments when the clock shows the time twice; by the clock before it is put forward when
  // it never does.
  std::int64_t MomentOf(std::int64_t wall) const;

  const std::vector<Change>& Changes() const { return changes; }

 private:
  std::int32_t initial = 0;
  std::vector<Change> changes;
};

}  // namespace platform
