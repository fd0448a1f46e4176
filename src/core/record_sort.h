// Sorting a list of records by a field that lies in the file.
#pragma once

#include <cstdint>
#include <vector>

#include "core/record_query.h"

namespace core {

// Orders `offsets` by `order`; equal fields stay in file order. Each record's field is read once: one record
// at a time, or, with `wholeFile`, in runs of slots, which is quicker from about a hundred records on.
// Whatever the fields hold and however `compare` contradicts itself on them, every offset comes out once.
// False when a field could not be read (it counts as zeros), the order reaches beyond the slot or there is no
// memory.
bool SortRecords(const RecordFile& file, const RecordOrder& order, bool wholeFile,
                 std::vector<std::int32_t>& offsets);

}  // namespace core
