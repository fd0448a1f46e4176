#include "core/calendar/text_search.h"

#include <algorithm>
#include <cstring>

#include "core/store/record_scan.h"
#include "core/store/text_field.h"
#include "core/store/value_compare.h"

namespace core {
namespace {

// Folds to lower case, in a way that the compiler makes wide instructions of; answers the end.
char* Fold(std::string_view text, char* folded) {
  for (std::size_t i = 0; i < text.size(); ++i)
    folded[i] = static_cast<char>(FoldCase(static_cast<unsigned char>(text[i])));
  return folded + text.size();
}

}  // namespace

TextFilter::TextFilter(std::string_view text) : wanted(text.substr(0, std::min(text.find('\0'), kMostText))) {
  Fold(wanted, wanted.data());
}

// Both texts are looked through in one go; no text reaches over the zero byte between them.
bool TextFilter::Matches(const Appointment& appointment) const {
  char texts[sizeof appointment.subject + 1 + sizeof appointment.notes];
  char* end = Fold(ReadText(appointment.subject), texts);
  *end = '\0';
  end = Fold(ReadText(appointment.notes), end + 1);
  return memmem(texts, static_cast<std::size_t>(end - texts), wanted.data(), wanted.size()) != nullptr;
}

bool IsOfCategory(const Appointment& appointment, const std::string& category) {
  const auto& name = appointment.header.category;
  return CompareText(name, category.c_str(), sizeof name) == 0;
}

bool TextSearch::Run(const RecordFile& file, std::string_view text, std::string_view category) {
  Clear();
  filter.emplace(text);
  wantedCategory = category;
  const bool made = Rebuild(file);
  if (made && whole) stamp = counterAtRun;
  return made;
}

// The field that the list is ordered by is at hand when a record is found: sorting reads nothing.
bool TextSearch::Rebuild(const RecordFile& file) {
  keys.clear();
  whole = false;
  if (file.SlotSize() != sizeof(Appointment) || !file.ReadChangeCounter(counterAtRun)) return false;
  struct Entry {
    std::uint64_t order;
    RecordKey record;
  };
  std::vector<Entry> found;
  const ScanResult scanned = ScanRecords(file, [&](const char* slot, std::int32_t offset) {
    const auto& appointment = *reinterpret_cast<const Appointment*>(slot);
    if (found.size() >= kMostRecords || !filter->Matches(appointment)) return;
    if (!wantedCategory.empty() && !IsOfCategory(appointment, wantedCategory)) return;
    found.push_back(
        {kDateTimeOrder.key(slot + kDateTimeOrder.fieldOffset), {offset, appointment.header.recordId}});
  });
  if (scanned == ScanResult::kFailed) return false;
  std::stable_sort(found.begin(), found.end(),
                   [](const Entry& a, const Entry& b) { return a.order < b.order; });
  for (const Entry& entry : found) keys.push_back(entry.record);
  whole = scanned == ScanResult::kAll;
  return true;
}

}  // namespace core
