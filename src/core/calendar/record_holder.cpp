#include "core/calendar/record_holder.h"

#include <cstring>

namespace core {

void RecordHolder::Put(const void* bytes, std::size_t size, unsigned newTag) {
  const auto* first = static_cast<const char*>(bytes);
  record.assign(first, first + size);
  tag = newTag;
}

bool RecordHolder::Read(void* bytes, std::size_t size) const {
  if (record.empty() || record.size() != size) return false;
  std::memcpy(bytes, record.data(), size);
  return true;
}

void RecordHolder::Empty() {
  *this = {};
}

}  // namespace core
