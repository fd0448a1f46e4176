// The appointments whose subject or notes contain a text: what Find shows. One that repeats is found once.
#pragma once

#include <string_view>
#include <vector>

#include "core/store/record_list.h"
#include "core/store/record_query.h"

namespace core {

class TextSearch final : public RecordList {
 public:
  // More bytes of a text are not looked for.
  static constexpr std::size_t kMostText = RecordQuery::kValueSize - 1;

  // Lists them by date and start time, the first kMostRecords of the file; with a category only its
  // appointments. Text and category are compared without regard to the case of ASCII letters. False, with the
  // list empty, when there is no memory, the file is closed or no calendar, or its password allows nothing. A
  // part of the file that cannot be read is passed over (IsWhole).
  [[nodiscard]] bool Run(const RecordFile& file, std::string_view text, std::string_view category = {});
  // Lists nothing, and has nothing to refresh.
  void Clear() { *this = TextSearch(); }

  const std::vector<RecordKey>& Keys() const override { return keys; }

 private:
  bool CanRebuild() const override { return conditions.ConditionCount() != 0; }
  bool Rebuild(const RecordFile& file) override;

  RecordQuery conditions;
  std::vector<RecordKey> keys;
};

// The conditions that the search is made of, for a query of the caller's: first the text, then the category.
void AddTextConditions(RecordQuery& query, std::string_view text);
void AddCategoryConditions(RecordQuery& query, std::string_view category);

}  // namespace core
