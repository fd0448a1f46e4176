// Pixels of bitmap files that are stored as runs of equal ones.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// The rows of a picture of `width` x `rows` pixels, lowest first, each padded to four bytes as an
// uncompressed file has them. `depth` is 4 or 8 bits a pixel; pixels that the runs leave out have colour 0.
// None when a run leaves its row or the picture, or when `runs` ends before the mark of the picture's end.
[[nodiscard]] std::optional<std::string> ExpandRuns(std::string_view runs, int width, int rows, int depth);
