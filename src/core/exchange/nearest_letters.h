// Texts of the whole of Unicode in the letters that the calendar has.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace core {

// The text in code page 1252: a letter that it lacks becomes the one that it is derived from, everything else
// "?", and `replaced` true where there is either. Control characters but for line feeds, and characters that
// show nothing, drop out; a tab becomes a blank. Nothing when the text is not UTF-8.
std::optional<std::string> InNearestLetters(std::string_view text, bool& replaced);

}  // namespace core
