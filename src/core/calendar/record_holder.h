// A place for one record outside of any file: the clipboard, or what was deleted last. It holds a copy of its
// own, so that it outlives the file the record came from.
#pragma once

#include <cstddef>
#include <vector>

namespace core {

class RecordHolder {
 public:
  bool IsEmpty() const { return record.empty(); }
  std::size_t Size() const { return record.size(); }  // bytes
  unsigned Tag() const { return tag; }                // 0 when empty

  // Takes a copy in place of what it held. `newTag` is kept beside it.
  void Put(const void* bytes, std::size_t size, unsigned newTag);
  // Copies the record out; it stays. False, `bytes` untouched, unless it holds one of just this size.
  [[nodiscard]] bool Read(void* bytes, std::size_t size) const;
  void Empty();

 private:
  std::vector<char> record;
  unsigned tag = 0;
};

}  // namespace core
