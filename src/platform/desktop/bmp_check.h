// What a bitmap file must be like before its pixels are decoded: the decoder is handed only files whose
// header agrees with itself and with the file's length.
#pragma once

#include <cstddef>
#include <string_view>

constexpr std::size_t kMostBmpBytes = std::size_t{16} << 20;
constexpr int kMostBmpSide = 2048;  // pixels; a skin has fourteen pictures

// True for an uncompressed bitmap of 1, 4, 8, 16, 24 or 32 bits a pixel, bottom-up or top-down, within the
// limits, whose colours and pixels all lie in the file.
bool IsSoundBmp(std::string_view bytes);
