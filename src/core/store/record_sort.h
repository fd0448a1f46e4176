// Sorting a list of records by a field that lies in the file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/store/record_file.h"
#include "core/store/record_key.h"

namespace core {

// How records are ordered: by a field of `fieldSize` bytes at `fieldOffset`. `compare` gets two fields and
// that size and answers negative, 0 or positive. `key`, where there is one, answers a number for a field such
// that numbers are ordered as `compare` orders the fields, which makes sorting long lists quick.
struct RecordOrder {
  std::int32_t fieldOffset;
  std::int32_t fieldSize;
  int (*compare)(const void* a, const void* b, std::size_t size);
  std::uint64_t (*key)(const void* field) = nullptr;
};

// Orders `records` by `order`; equal fields stay in file order. Each record's field is read once: one record
// at a time, or, with `wholeFile`, in runs of slots, which is quicker from about a hundred records on.
// Whatever the fields hold and however `compare` contradicts itself on them, every record comes out once.
// False when a field could not be read (it counts as zeros), the order reaches beyond the slot or there is no
// memory.
bool SortRecords(const RecordFile& file, const RecordOrder& order, bool wholeFile,
                 std::vector<RecordKey>& records);

}  // namespace core
