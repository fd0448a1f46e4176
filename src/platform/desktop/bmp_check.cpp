#include "platform/desktop/bmp_check.h"

#include <bit>
#include <cstdint>
#include <cstdlib>

namespace {

// Offsets from the start of the file. Numbers are little-endian.
constexpr std::size_t kPixelStartAt = 10;
constexpr std::size_t kHeaderSizeAt = 14;
constexpr std::size_t kOldHeader = 12;  // sizes of the known headers
constexpr std::size_t kHeader = 40;
constexpr std::size_t kHeader4 = 108;
constexpr std::size_t kHeader5 = 124;
constexpr std::size_t kMasksAt = kHeaderSizeAt + kHeader;
constexpr std::size_t kMasksSize = 12;

constexpr std::uint32_t kPlain = 0;
constexpr std::uint32_t kBitFields = 3;

std::uint32_t NumberAt(std::string_view bytes, std::size_t at, std::size_t size) {
  std::uint32_t number = 0;
  for (std::size_t i = size; i > 0; --i) number = number << 8 | static_cast<unsigned char>(bytes[at + i - 1]);
  return number;
}

std::uint32_t Word(std::string_view bytes, std::size_t at) {
  return NumberAt(bytes, at, 2);
}
std::uint32_t DoubleWord(std::string_view bytes, std::size_t at) {
  return NumberAt(bytes, at, 4);
}

std::int64_t Signed(std::string_view bytes, std::size_t at) {
  return static_cast<std::int32_t>(DoubleWord(bytes, at));
}

// The header, told apart from the form it has in the file.
struct Header {
  std::int64_t width;
  std::int64_t height;  // negative: the first row is the top one
  std::uint32_t planes;
  std::uint32_t depth;
  std::uint32_t compression;
  std::size_t colours;
  std::size_t colourBytes;  // each
  std::size_t tableStart;
};

// Of a file that holds the whole header.
Header ReadHeader(std::string_view bytes, std::size_t size) {
  Header header = {};
  header.tableStart = kHeaderSizeAt + size;
  const bool old = size == kOldHeader;
  header.width = old ? Word(bytes, 18) : Signed(bytes, 18);
  header.height = old ? Word(bytes, 20) : Signed(bytes, 22);
  header.planes = Word(bytes, old ? 22 : 26);
  header.depth = Word(bytes, old ? 24 : 28);
  header.compression = old ? kPlain : DoubleWord(bytes, 30);
  header.colours = old ? 0 : DoubleWord(bytes, 46);
  header.colourBytes = old ? 3 : 4;
  if (header.depth <= 8 && header.colours == 0) header.colours = std::size_t{1} << header.depth;
  if (size == kHeader && header.compression == kBitFields) header.tableStart += kMasksSize;
  return header;
}

// Consecutive bits for each of red, green and blue, apart from each other and within the pixel.
bool AreMasksSound(std::string_view bytes, std::uint32_t depth) {
  std::uint32_t taken = depth == 16 ? 0xFFFF0000U : 0;
  for (std::size_t i = 0; i < 3; ++i) {
    const std::uint32_t mask = DoubleWord(bytes, kMasksAt + 4 * i);
    if (mask == 0 || (mask & taken) != 0) return false;
    const std::uint32_t run = mask >> std::countr_zero(mask);
    if ((run & (run + 1)) != 0) return false;
    taken |= mask;
  }
  return true;
}

bool IsDepthSound(const Header& header) {
  const std::uint32_t depth = header.depth;
  if (header.compression == kBitFields) return depth == 16 || depth == 32;
  if (header.compression != kPlain) return false;
  return depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24 || depth == 32;
}

}  // namespace

bool IsSoundBmp(std::string_view bytes) {
  if (bytes.size() > kMostBmpBytes || bytes.size() < kHeaderSizeAt + 4 || !bytes.starts_with("BM")) {
    return false;
  }
  const std::size_t size = DoubleWord(bytes, kHeaderSizeAt);
  if (size != kOldHeader && size != kHeader && size != kHeader4 && size != kHeader5) return false;
  if (bytes.size() < kHeaderSizeAt + size) return false;
  const Header header = ReadHeader(bytes, size);
  if (header.planes != 1 || !IsDepthSound(header)) return false;
  const std::int64_t rows = std::abs(header.height);
  if (header.width < 1 || header.width > kMostBmpSide || rows < 1 || rows > kMostBmpSide) return false;
  // A table for true colours is a hint that is skipped.
  if (header.depth <= 8 && header.colours > std::size_t{1} << header.depth) return false;
  const std::size_t start = DoubleWord(bytes, kPixelStartAt);
  const std::size_t table = header.depth <= 8 ? header.colours * header.colourBytes : 0;
  if (start < header.tableStart + table || start > bytes.size()) return false;
  if (header.compression == kBitFields && !AreMasksSound(bytes, header.depth)) return false;
  const auto rowBytes = (static_cast<std::size_t>(header.width) * header.depth + 31) / 32 * 4;
  return rowBytes * static_cast<std::size_t>(rows) <= bytes.size() - start;
}
