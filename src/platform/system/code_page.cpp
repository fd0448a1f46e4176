#include "platform/system/code_page.h"

#include <algorithm>
#include <array>

namespace platform {
namespace {

// What the bytes from kFirstOwn on stand for. All others stand for the character of their own number.
constexpr std::size_t kFirstOwn = 0x80;
constexpr std::array<char16_t, 32> kOwn{0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                        0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                        0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                        0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t CharacterOf(char byte) {
  const auto number = static_cast<unsigned char>(byte);
  const bool own = number >= kFirstOwn && number < kFirstOwn + kOwn.size();
  return own ? kOwn[number - kFirstOwn] : number;
}

bool ByteOf(char32_t character, char& byte) {
  if (character <= 0xFF && CharacterOf(static_cast<char>(character)) == character) {
    byte = static_cast<char>(character);
    return true;
  }
  const auto* const found = std::find(kOwn.begin(), kOwn.end(), character);
  if (found == kOwn.end()) return false;
  byte = static_cast<char>(kFirstOwn + static_cast<std::size_t>(found - kOwn.begin()));
  return true;
}

void AppendUtf8(char32_t character, std::string& text) {
  const auto tail = [character](unsigned shift) {
    return static_cast<char>(0x80 | ((character >> shift) & 0x3F));
  };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | (character >> 6));
    text += tail(0);
  } else {  // the code page has no character beyond FFFF
    text += static_cast<char>(0xE0 | (character >> 12));
    text += tail(6);
    text += tail(0);
  }
}

// Takes one character off the front of `text`. False when no whole, shortest form stands there. Forms of four
// bytes are refused with the rest: the code page has none of their characters.
bool TakeCharacter(std::string_view& text, char32_t& character) {
  const auto first = static_cast<unsigned char>(text.front());
  std::size_t length = 0;
  char32_t least = 0;
  if (first < 0x80) {
    length = 1;
    character = first;
  } else if ((first & 0xE0) == 0xC0) {
    length = 2;
    least = 0x80;
    character = first & 0x1F;
  } else if ((first & 0xF0) == 0xE0) {
    length = 3;
    least = 0x800;
    character = first & 0x0F;
  } else {
    return false;
  }
  if (text.size() < length) return false;
  for (std::size_t i = 1; i < length; ++i) {
    const auto tail = static_cast<unsigned char>(text[i]);
    if ((tail & 0xC0) != 0x80) return false;
    character = (character << 6) | (tail & 0x3F);
  }
  text.remove_prefix(length);
  return character >= least;
}

}  // namespace

std::string Utf8FromCodePage(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) AppendUtf8(CharacterOf(byte), text);
  return text;
}

bool CodePageFromUtf8(std::string_view text, std::string& bytes) {
  std::string converted;
  converted.reserve(text.size());
  bytes.clear();
  while (!text.empty()) {
    char32_t character = 0;
    char byte = 0;
    if (!TakeCharacter(text, character) || !ByteOf(character, byte)) return false;
    converted += byte;
  }
  bytes = std::move(converted);
  return true;
}

std::string NearestInCodePage(std::string_view text, bool& replaced) {
  std::string bytes;
  bytes.reserve(text.size());
  while (!text.empty()) {
    std::string_view rest = text;
    char32_t character = 0;
    char byte = '?';
    if (!TakeCharacter(rest, character)) {
      // The whole of a character that takes four bytes, else what stands in a character's place.
      rest = text.substr(1);
      while (!rest.empty() && (static_cast<unsigned char>(rest.front()) & 0xC0) == 0x80)
        rest.remove_prefix(1);
      replaced = true;
    } else if (!ByteOf(character, byte)) {
      replaced = true;
    }
    bytes += byte;
    text = rest;
  }
  return bytes;
}

bool InCodePage(char32_t character) {
  char byte = 0;
  return ByteOf(character, byte);
}

}  // namespace platform
