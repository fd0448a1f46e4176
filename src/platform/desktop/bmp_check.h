// Bitmap files that may come from anywhere: what one must be like before its pixels are decoded. The decoder
// is handed only files whose header agrees with itself and with the file's length, in the forms that it knows
// well.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

constexpr std::size_t kMostBmpBytes = std::size_t{16} << 20;
constexpr int kMostBmpSide = 2048;  // pixels; a skin has fourteen pictures

// The bitmap in a plain form: uncompressed, behind one of the usual headers. That is `bytes` itself where it
// has this form, else what is put into `room`. None but for a bitmap of 1, 4, 8, 16, 24 or 32 bits a pixel,
// bottom-up or top-down, or of runs of 4 or 8 bits a pixel, bottom-up, within the limits, whose colours,
// pixels and runs all lie in the file.
[[nodiscard]] std::optional<std::string_view> PlainBmp(std::string_view bytes, std::string& room);
