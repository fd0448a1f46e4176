// Colours as skin files write them: "red,green,blue" in decimal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/desktop/types.h"

// Reads the numbers from the left, each with blanks and a sign before it, and stops where the text is
// anything else; what it does not reach is 0. Only the low 8 bits of a number count, however long it is.
constexpr COLORREF ParseSkinColour(std::string_view text) {
  std::uint32_t components[3] = {0, 0, 0};
  std::size_t at = 0;
  const auto digit = [&] { return at < text.size() && text[at] >= '0' && text[at] <= '9'; };
  for (std::uint32_t& component : components) {
    while (at < text.size() && (text[at] == ' ' || (text[at] >= '\t' && text[at] <= '\r'))) ++at;
    const bool negative = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) ++at;
    if (!digit()) break;
    std::uint32_t number = 0;
    // Wraps around: the low bits stay right.
    for (; digit(); ++at) number = number * 10 + static_cast<std::uint32_t>(text[at] - '0');
    component = (negative ? 0U - number : number) & 0xFFU;
    if (at >= text.size() || text[at] != ',') break;
    ++at;
  }
  return components[0] | components[1] << 8 | components[2] << 16;
}
