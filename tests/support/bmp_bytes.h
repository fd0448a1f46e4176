// Bitmap files for tests, byte by byte.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>

namespace tests {

inline void Append(std::string& bytes, std::uint32_t number, int size) {
  for (int i = 0; i < size; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFF);
}

// Writes a number over the bytes at a place.
inline void Put(std::string& bytes, std::size_t at, std::uint32_t number, std::size_t size) {
  std::string text;
  Append(text, number, static_cast<int>(size));
  bytes.replace(at, size, text);
}

// A bitmap of the usual form without pixels: `header` is the size of its second header. Palettes are all
// RGB(3, 2, 1), which is also the pixel that the bytes 1 2 3 make.
struct BmpForm {
  int width = 2;
  int height = 2;
  unsigned depth = 24;
  unsigned header = 40;
};

inline std::string MakeBmp(const BmpForm& form, char fill = 0) {
  const unsigned colours = form.depth <= 8 ? 1U << form.depth : 0;
  const unsigned start = 14 + form.header + colours * (form.header == 12 ? 3 : 4);
  const auto rowBytes = (static_cast<unsigned>(form.width) * form.depth + 31) / 32 * 4;
  std::string bytes = "BM";
  Append(bytes, start + rowBytes * static_cast<unsigned>(std::abs(form.height)), 4);
  Append(bytes, 0, 4);
  Append(bytes, start, 4);
  Append(bytes, form.header, 4);
  const int side = form.header == 12 ? 2 : 4;
  Append(bytes, static_cast<std::uint32_t>(form.width), side);
  Append(bytes, static_cast<std::uint32_t>(form.height), side);
  Append(bytes, 1, 2);
  Append(bytes, form.depth, 2);
  bytes.resize(14 + form.header);
  for (unsigned i = 0; i < colours; ++i) Append(bytes, 0x00030201, form.header == 12 ? 3 : 4);
  bytes.append(std::size_t{rowBytes} * static_cast<std::size_t>(std::abs(form.height)), fill);
  return bytes;
}

// One pixel of a colour.
inline std::string OnePixel(unsigned char red, unsigned char green, unsigned char blue) {
  std::string bytes = MakeBmp({1, 1, 24, 40});
  Put(bytes, bytes.size() - 4, std::uint32_t{red} << 16 | std::uint32_t{green} << 8 | blue, 4);
  return bytes;
}

}  // namespace tests
