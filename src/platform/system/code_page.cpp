#include "platform/system/code_page.h"

#include <iconv.h>

#include <array>

namespace platform {
namespace {

using CharacterTable = std::array<char32_t, 256>;

// Byte by byte, because the five undefined bytes are errors to iconv: those keep their number. So do all
// bytes in a system without the conversion, which then knows the Western letters at least.
CharacterTable MakeTable() {
  CharacterTable table = {};
  const iconv_t conversion = iconv_open("UTF-32LE", "CP1252");
  const bool known = conversion != reinterpret_cast<iconv_t>(-1);
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    table[byte] = static_cast<char32_t>(byte);
    if (!known) continue;
    char from = static_cast<char>(byte);
    std::array<unsigned char, 4> to = {};
    char* input = &from;
    char* output = reinterpret_cast<char*>(to.data());
    std::size_t inputLeft = 1;
    std::size_t outputLeft = to.size();
    iconv(conversion, nullptr, nullptr, nullptr, nullptr);  // forget the byte that failed
    const bool converted = iconv(conversion, &input, &inputLeft, &output, &outputLeft) == 0;
    if (converted && outputLeft == 0) {
      table[byte] = static_cast<char32_t>(to[0] | (to[1] << 8) | (to[2] << 16));
    }
  }
  if (known) iconv_close(conversion);
  return table;
}

const CharacterTable& Table() {
  static const CharacterTable kTable = MakeTable();
  return kTable;
}

// Outside 80..9F the code page and Unicode agree.
constexpr char32_t kFirstOwn = 0x80;
constexpr char32_t kLastOwn = 0x9F;

bool ByteOf(char32_t character, char& byte) {
  const CharacterTable& table = Table();
  if (character < table.size() && table[character] == character) {
    byte = static_cast<char>(character);
    return true;
  }
  for (char32_t candidate = kFirstOwn; candidate <= kLastOwn; ++candidate) {
    if (table[candidate] != character) continue;
    byte = static_cast<char>(candidate);
    return true;
  }
  return false;
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
  for (const char byte : bytes) AppendUtf8(Table()[static_cast<unsigned char>(byte)], text);
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

bool InCodePage(char32_t character) {
  char byte = 0;
  return ByteOf(character, byte);
}

}  // namespace platform
