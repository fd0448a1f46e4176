// One pass over the records of a file, for whoever lists them.
#pragma once

#include <cstdint>
#include <functional>

#include "core/store/record_file.h"

namespace core {

enum class ScanResult {
  kAll,     // everything was read
  kParts,   // something could not be read, and was passed over
  kFailed,  // there is no memory, the file is closed, or its password allows nothing
};

// What is called with a record: its bytes, of which kLargestSlotSize may be read (zeros follow a smaller
// slot), and its offset.
using RecordVisit = std::function<void(const char* slot, std::int32_t offset)>;

// Calls `visit` with each live record that the file's password shows, in file order. Reads kSlotsPerRead
// slots at a time.
[[nodiscard]] ScanResult ScanRecords(const RecordFile& file, const RecordVisit& visit);

// The same with every live record, whatever the password: for who asks for the rights himself.
[[nodiscard]] ScanResult ScanLiveSlots(const RecordFile& file, const RecordVisit& visit);

}  // namespace core
