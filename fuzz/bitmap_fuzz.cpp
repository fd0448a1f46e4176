// Bitmap files: whatever the bytes, a picture within the limits or none.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "platform/desktop/bitmap.h"
#include "platform/desktop/bmp_check.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const auto bitmap = Bitmap::FromBmp(bytes);
  if (bitmap == nullptr) return 0;
  const int width = bitmap->Width();
  const int height = bitmap->Height();
  if (width < 1 || width > kMostBmpSide || height < 1 || height > kMostBmpSide) std::abort();
  // The same bytes give the same picture: no pixel is left over from other memory.
  const auto again = Bitmap::FromBmp(bytes);
  for (int y = 0; y < height && y < 64; ++y) {
    for (int x = 0; x < width && x < 64; ++x) {
      if (bitmap->PixelAt(x, y) != again->PixelAt(x, y)) std::abort();
    }
  }
  if (bitmap->PixelAt(width - 1, height - 1) != again->PixelAt(width - 1, height - 1)) std::abort();
  return 0;
}
