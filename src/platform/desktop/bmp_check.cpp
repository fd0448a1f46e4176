#include "platform/desktop/bmp_check.h"

#include <bit>
#include <cstdint>
#include <cstdlib>

#include "platform/desktop/bmp_runs.h"

namespace {

// Offsets from the start of the file. Numbers are little-endian.
constexpr std::size_t kPixelStartAt = 10;
constexpr std::size_t kHeaderSizeAt = 14;
constexpr std::size_t kCompressionAt = 30;
constexpr std::size_t kPixelBytesAt = 34;
constexpr std::size_t kOldHeader = 12;  // sizes of the known headers
constexpr std::size_t kHeader = 40;
constexpr std::size_t kHeader2 = 52;  // this and the next are the usual one with the masks in it
constexpr std::size_t kHeader3 = 56;
constexpr std::size_t kHeader4 = 108;
constexpr std::size_t kHeader5 = 124;
constexpr std::size_t kMasksAt = kHeaderSizeAt + kHeader;
constexpr std::size_t kMasksSize = 12;

constexpr std::uint32_t kPlain = 0;
constexpr std::uint32_t kRuns8 = 1;
constexpr std::uint32_t kRuns4 = 2;
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

void PutDoubleWord(std::string& bytes, std::size_t at, std::size_t number) {
  for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<char>(number >> (8 * i) & 0xFFU);
}

// The header, told apart from the form it has in the file.
struct Header {
  std::size_t size;
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
  header.size = size;
  header.tableStart = kHeaderSizeAt + size;
  const bool old = size == kOldHeader;
  header.width = old ? Word(bytes, 18) : Signed(bytes, 18);
  header.height = old ? Word(bytes, 20) : Signed(bytes, 22);
  header.planes = Word(bytes, old ? 22 : 26);
  header.depth = Word(bytes, old ? 24 : 28);
  header.compression = old ? kPlain : DoubleWord(bytes, kCompressionAt);
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

bool HasRuns(const Header& header) {
  return header.compression == kRuns8 || header.compression == kRuns4;
}

bool IsDepthSound(const Header& header) {
  const std::uint32_t depth = header.depth;
  switch (header.compression) {
    case kBitFields:
      return depth == 16 || depth == 32;
    case kRuns8:
      return depth == 8;
    case kRuns4:
      return depth == 4;
    case kPlain:
      return depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24 || depth == 32;
    default:
      return false;
  }
}

bool IsHeaderSize(std::size_t size) {
  return size == kOldHeader || size == kHeader || size == kHeader2 || size == kHeader3 || size == kHeader4 ||
         size == kHeader5;
}

std::size_t RowBytes(const Header& header) {
  return (static_cast<std::size_t>(header.width) * header.depth + 31) / 32 * 4;
}

// The bytes of the colours; a table for true colours is a hint that is skipped.
std::size_t TableBytes(const Header& header) {
  return header.depth <= 8 ? header.colours * header.colourBytes : 0;
}

// The header, if it agrees with itself and with the length of the file.
std::optional<Header> SoundHeader(std::string_view bytes) {
  if (bytes.size() > kMostBmpBytes || bytes.size() < kHeaderSizeAt + 4 || !bytes.starts_with("BM")) return {};
  const std::size_t size = DoubleWord(bytes, kHeaderSizeAt);
  if (!IsHeaderSize(size) || bytes.size() < kHeaderSizeAt + size) return {};
  const Header header = ReadHeader(bytes, size);
  if (header.planes != 1 || !IsDepthSound(header)) return {};
  const std::int64_t rows = std::abs(header.height);
  if (header.width < 1 || header.width > kMostBmpSide || rows < 1 || rows > kMostBmpSide) return {};
  if (header.depth <= 8 && header.colours > std::size_t{1} << header.depth) return {};
  const std::size_t start = DoubleWord(bytes, kPixelStartAt);
  if (start < header.tableStart + TableBytes(header) || start > bytes.size()) return {};
  if (header.compression == kBitFields && !AreMasksSound(bytes, header.depth)) return {};
  if (HasRuns(header)) return header.height > 0 ? std::optional(header) : std::nullopt;
  const bool whole = RowBytes(header) * static_cast<std::size_t>(rows) <= bytes.size() - start;
  return whole ? std::optional(header) : std::nullopt;
}

// The file up to its pixels, with the usual header; what stands between colours and pixels is left out.
std::string UsualBeginning(std::string_view bytes, const Header& header) {
  const bool masks = header.compression == kBitFields;
  std::string beginning(bytes.substr(0, kHeaderSizeAt + kHeader + (masks ? kMasksSize : 0)));
  beginning += bytes.substr(header.tableStart, TableBytes(header));
  PutDoubleWord(beginning, kHeaderSizeAt, kHeader);
  PutDoubleWord(beginning, kPixelStartAt, beginning.size());
  return beginning;
}

// The runs of a file; as many bytes as the header says, if it does.
std::optional<std::string_view> RunsOf(std::string_view bytes) {
  const std::string_view rest = bytes.substr(DoubleWord(bytes, kPixelStartAt));
  const std::size_t told = DoubleWord(bytes, kPixelBytesAt);
  if (told > rest.size()) return {};
  return told == 0 ? rest : rest.substr(0, told);
}

}  // namespace

std::optional<std::string_view> PlainBmp(std::string_view bytes, std::string& room) {
  const std::optional<Header> header = SoundHeader(bytes);
  if (!header) return {};
  if (HasRuns(*header)) {
    const std::optional<std::string_view> runs = RunsOf(bytes);
    if (!runs) return {};
    const std::optional<std::string> pixels =
        ExpandRuns(*runs, static_cast<int>(header->width), static_cast<int>(header->height),
                   static_cast<int>(header->depth));
    if (!pixels) return {};
    room = UsualBeginning(bytes, *header);
    PutDoubleWord(room, kCompressionAt, kPlain);
    PutDoubleWord(room, kPixelBytesAt, pixels->size());
    room += *pixels;
    return room;
  }
  if (header->size != kHeader2 && header->size != kHeader3) return bytes;
  room = UsualBeginning(bytes, *header);
  room += bytes.substr(DoubleWord(bytes, kPixelStartAt));
  return room;
}
