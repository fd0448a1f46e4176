#include "core/calendar/categories.h"

#include <algorithm>

namespace core {

CategoryBlock CategoriesFromNames(const std::vector<std::string>& names) {
  CategoryBlock block{};
  block.count = static_cast<std::uint32_t>(names.size());
  const std::size_t kept = std::min(names.size(), kShownCategories);
  for (std::size_t i = 0; i < kept; ++i) WriteText(block.entries[i].name, names[i]);
  return block;
}

bool ReadCategories(const RecordFile& file, CategoryList& list) {
  list = {};
  CategoryBlock block;
  if (!file.ReadCategoryBlock(block)) return false;
  list.count = block.count;
  const std::size_t kept = std::min<std::size_t>(block.count, kCategoryEntries);
  for (std::size_t i = 0; i < kept; ++i) {
    const std::string_view name = ReadText(block.entries[i].name);
    if (!name.empty()) list.names.emplace_back(name);
  }
  return true;
}

CommandResult StoreCategories(RecordFile& file, const std::vector<std::string>& names) {
  const CommandResult written = FromFile(file, file.WriteCategoryBlock(CategoriesFromNames(names)));
  return IsMade(written) ? Flush(file, written) : written;
}

}  // namespace core
