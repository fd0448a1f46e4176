// The one place where texts change between the data files' single bytes (code page 1252) and the screen's
// UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Every byte has a character: the five that code page 1252 leaves undefined (81, 8D, 8F, 90, 9D) become the
// control characters of the same number, so that the way there and back changes nothing.
std::string Utf8FromCodePage(std::string_view bytes);

// The reverse. A character that the code page lacks, or bytes that are no UTF-8, make the whole call fail:
// false, and `bytes` is empty.
bool CodePageFromUtf8(std::string_view text, std::string& bytes);

// The same with a "?" for every character that the code page lacks and for what is no UTF-8; `replaced`
// becomes true where there is one.
std::string NearestInCodePage(std::string_view text, bool& replaced);

// Whether the code page has this Unicode character.
bool InCodePage(char32_t character);

}  // namespace platform
