// One pass over the records of a file, for whoever lists them.
#pragma once

#include <cstdint>
#include <functional>

#include "core/record_file.h"

namespace core {

// Calls `visit` with each live record that the file's password shows, in file order: its bytes, of which
// kLargestSlotSize may be read (zeros follow a smaller slot), and its offset. Reads kSlotsPerRead slots at a
// time and passes over what cannot be read. False when there is no memory or the file is closed.
bool ScanRecords(const RecordFile& file,
                 const std::function<void(const char* slot, std::int32_t offset)>& visit);

}  // namespace core
