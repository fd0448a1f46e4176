// The name of a record. The offset of its slot alone will not do for longer than a guard is held: another
// user may delete the record, and the slot then goes to the next one that somebody adds. Whoever shows or
// lists a record keeps its key from the moment it was read, and whatever is done with it later compares the
// id first.
#pragma once

#include <cstdint>

namespace core {

struct RecordKey {
  std::int32_t offset = -1;  // of its slot; negative for no record
  std::uint64_t id = 0;      // the recordId in that slot when the key was made

  bool IsNone() const { return offset < 0; }
  bool operator==(const RecordKey&) const = default;
};

}  // namespace core
