#include "platform/desktop/bmp_runs.h"

#include <cstddef>
#include <utility>

namespace {

// What follows a zero: one of these marks, or a number of pixels that stand there one by one.
constexpr unsigned kRowEnd = 0;
constexpr unsigned kPictureEnd = 1;
constexpr unsigned kMove = 2;

// Takes the numbers of the runs one after the other.
class Reader {
 public:
  explicit Reader(std::string_view source) : bytes(source) {}

  bool Has(std::size_t count) const { return bytes.size() - at >= count; }
  unsigned Take() { return static_cast<unsigned char>(bytes[at++]); }

 private:
  std::string_view bytes;
  std::size_t at = 0;
};

class Picture {
 public:
  Picture(int newWidth, int newRows, int newDepth)
      : width(newWidth),
        rows(newRows),
        depth(newDepth),
        rowBytes(static_cast<std::size_t>(width * depth + 31) / 32 * 4),
        pixels(rowBytes * static_cast<std::size_t>(rows), '\0') {}

  void StartRow() {
    x = 0;
    ++y;
  }
  bool Move(unsigned right, unsigned up) {
    x += static_cast<int>(right);
    y += static_cast<int>(up);
    return x <= width && y <= rows;
  }
  bool HasRoom(unsigned count) const { return y < rows && static_cast<int>(count) <= width - x; }
  void Put(unsigned colour) {
    const std::size_t place =
        rowBytes * static_cast<std::size_t>(y) + static_cast<std::size_t>(x * depth / 8);
    const unsigned shift = depth == 4 && x % 2 == 0 ? 4 : 0;
    pixels[place] = static_cast<char>(static_cast<unsigned char>(pixels[place]) | colour << shift);
    ++x;
  }
  std::string Pixels() && { return std::move(pixels); }

 private:
  int width;
  int rows;
  int depth;
  std::size_t rowBytes;
  std::string pixels;
  int x = 0;
  int y = 0;
};

// The colour of a pixel in a byte that holds two of 4 bits or one of 8.
unsigned ColourIn(unsigned byte, unsigned pixel, int depth) {
  if (depth == 8) return byte;
  return pixel % 2 == 0 ? byte >> 4 : byte & 0xFU;
}

// `count` pixels, each with a colour of its own. They fill an even number of bytes.
bool PutOneByOne(Reader& reader, Picture& picture, unsigned count, int depth) {
  const std::size_t bytes = depth == 8 ? count : (count + 1) / 2;
  if (!reader.Has(bytes + bytes % 2) || !picture.HasRoom(count)) return false;
  unsigned byte = 0;
  for (unsigned i = 0; i < count; ++i) {
    if (depth == 8 || i % 2 == 0) byte = reader.Take();
    picture.Put(ColourIn(byte, i, depth));
  }
  if (bytes % 2 != 0) reader.Take();
  return true;
}

bool PutRun(Picture& picture, unsigned count, unsigned colours, int depth) {
  if (!picture.HasRoom(count)) return false;
  for (unsigned i = 0; i < count; ++i) picture.Put(ColourIn(colours, i, depth));
  return true;
}

}  // namespace

std::optional<std::string> ExpandRuns(std::string_view runs, int width, int rows, int depth) {
  Reader reader(runs);
  Picture picture(width, rows, depth);
  while (reader.Has(2)) {
    const unsigned count = reader.Take();
    const unsigned value = reader.Take();
    bool sound = true;
    if (count > 0) {
      sound = PutRun(picture, count, value, depth);
    } else if (value == kPictureEnd) {
      return std::move(picture).Pixels();
    } else if (value == kRowEnd) {
      picture.StartRow();
    } else if (value == kMove) {
      sound = reader.Has(2);
      if (sound) {
        const unsigned right = reader.Take();
        sound = picture.Move(right, reader.Take());
      }
    } else {
      sound = PutOneByOne(reader, picture, value, depth);
    }
    if (!sound) return std::nullopt;
  }
  return std::nullopt;
}
