// Text fields of stored structures: a fixed number of bytes in code page 1252, ended by a zero byte unless
// the text fills the field. These two are the only ways in and out of such a field.
#pragma once

#include <cstddef>
#include <cstring>
#include <string_view>

namespace core {

// The text in a field of `size` bytes: up to the first zero byte, or the whole field. Points into the field.
inline std::string_view ReadText(const char* field, std::size_t size) {
  return {field, strnlen(field, size)};
}

template <std::size_t kSize>
std::string_view ReadText(const char (&field)[kSize]) {
  return ReadText(field, kSize);
}

// Puts `text` into a field of `size` bytes and zero-fills the rest. A text longer than the field is cut; one
// of the field's length leaves no room for a zero byte. `text` must not lie in the field itself.
inline void WriteText(char* field, std::size_t size, std::string_view text) {
  const std::size_t length = text.size() < size ? text.size() : size;
  if (length != 0) std::memcpy(field, text.data(), length);
  std::memset(field + length, 0, size - length);
}

template <std::size_t kSize>
void WriteText(char (&field)[kSize], std::string_view text) {
  WriteText(field, kSize, text);
}

}  // namespace core
