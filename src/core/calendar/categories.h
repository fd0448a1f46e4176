// The list of category names that every record file carries. A record names its category by a copy of the
// name, so the list can change without touching a record.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/store/edit_lock.h"

namespace core {

// Entries that menus and the editor show and store, one less than the block has room for.
inline constexpr std::size_t kShownCategories = 29;

struct CategoryList {
  std::uint32_t count = 0;         // as stored; may exceed the names
  std::vector<std::string> names;  // code page 1252, in the order of the block; those that are not empty
};

// The block that stores these names: the first 29 of them, but the count of all. Everything else is zero.
CategoryBlock CategoriesFromNames(const std::vector<std::string>& names);

// At most kCategoryEntries names, whatever the stored count. False when the block cannot be read; the list is
// then empty.
bool ReadCategories(const RecordFile& file, CategoryList& list);

// Writes the list for all users of the file and brings it to the disk. It leaves the change counter alone,
// which counts records: others see the list when they read it next. kDone, kNotFlushed, kReader, kNoAccess or
// kFailed.
[[nodiscard]] CommandResult StoreCategories(RecordFile& file, const std::vector<std::string>& names);

}  // namespace core
