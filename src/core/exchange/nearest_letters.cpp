#include "core/exchange/nearest_letters.h"

#include <algorithm>
#include <array>

#include "platform/system/code_page.h"

namespace core {
namespace {

// What stands in a range of letters: the letter to write, "." for one of the code page, "?" for none.
struct LetterRange {
  char32_t first;
  std::string_view letters;
};

constexpr std::array<LetterRange, 3> kRanges{{
    {0x100,
     "AaAaAaCcCcCcCcDdDdEeEeEeEeEeGgGgGgGgHhHhIiIiIiIiIiIiJjKkkLlLlLlLlLlNnNnNnnNnOoOoOo..RrRrRrSsSsSs.."
     "TtTtTtUuUu"
     "UuUuUuUuWwYy.ZzZz..s"},
    {0x1CD,
     "AaIiOoUuUuUuUuUu?AaAa????GgKkOoOo??j???Gg??NnAa????AaAaEeEeIiIiOoOoRrRrUuUuSsTt??Hh??????"
     "AaEeOoOoOoOoYy"},
    {0x1E00,
     "AaBbBbBbCcDdDdDdDdDdEeEeEeEeEeFfGgHhHhHhHhHhIiIiKkKkKkLlLlLlLlMmMmMmNnNnNnNnOoOoOoOoPpPpRrRrRrRrSsSsSsS"
     "sSsTtTtTtTt"
     "UuUuUuUuUuVvVvWwWwWwWwWwXxXxYyZzZzZzhtwy?sssS?"
     "AaAaAaAaAaAaAaAaAaAaAaAaEeEeEeEeEeEeEeEeIiIiOoOoOoOoOoOoOoOoOoOoOoOoUu"
     "UuUuUuUuUuUuYyYyYyYy"},
}};

// Signs that look like one of the code page.
struct Likeness {
  char32_t sign;
  char like;
};
constexpr std::array<Likeness, 12> kLikenesses{{{0x2010, '-'},
                                                {0x2011, '-'},
                                                {0x2012, '-'},
                                                {0x2015, '-'},
                                                {0x2212, '-'},
                                                {0x2032, '\''},
                                                {0x2033, '"'},
                                                {0x2044, '/'},
                                                {0x2002, ' '},
                                                {0x2003, ' '},
                                                {0x2009, ' '},
                                                {0x202F, ' '}}};

// A mark that is written behind its letter, and what the two come to in the code page.
struct Mark {
  char32_t mark;
  std::string_view letters;
  std::u32string_view marked;
};
constexpr std::array<Mark, 8> kMarks{{
    {0x300, "AEIOUaeiou", U"\u00C0\u00C8\u00CC\u00D2\u00D9\u00E0\u00E8\u00EC\u00F2\u00F9"},
    {0x301, "AEIOUYaeiouy", U"\u00C1\u00C9\u00CD\u00D3\u00DA\u00DD\u00E1\u00E9\u00ED\u00F3\u00FA\u00FD"},
    {0x302, "AEIOUaeiou", U"\u00C2\u00CA\u00CE\u00D4\u00DB\u00E2\u00EA\u00EE\u00F4\u00FB"},
    {0x303, "AONaon", U"\u00C3\u00D5\u00D1\u00E3\u00F5\u00F1"},
    {0x308, "AEIOUYaeiouy", U"\u00C4\u00CB\u00CF\u00D6\u00DC\u0178\u00E4\u00EB\u00EF\u00F6\u00FC\u00FF"},
    {0x30A, "Aa", U"\u00C5\u00E5"},
    {0x30C, "SZsz", U"\u0160\u017D\u0161\u017E"},
    {0x327, "Cc", U"\u00C7\u00E7"},
}};

constexpr bool IsBetween(char32_t character, char32_t first, char32_t last) {
  return character >= first && character <= last;
}

// Controls, and marks of direction, of joining and of the kind of picture that a sign is.
bool ShowsNothing(char32_t character) {
  return (character < 0x20 && character != '\n') || IsBetween(character, 0x7F, 0x9F) || character == 0xAD ||
         IsBetween(character, 0x200B, 0x200F) || IsBetween(character, 0x202A, 0x202E) ||
         IsBetween(character, 0x2060, 0x206F) || IsBetween(character, 0xFE00, 0xFE0F) ||
         character == 0xFEFF || IsBetween(character, 0xE0000, 0xE01EF);
}

// Takes the character at `at`. False when no whole, shortest form stands there.
bool TakeCharacter(std::string_view text, std::size_t& at, char32_t& character) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned first = byte(at);
  const std::size_t length = first < 0x80   ? 1
                             : first < 0xC0 ? 0
                             : first < 0xE0 ? 2
                             : first < 0xF0 ? 3
                             : first < 0xF8 ? 4
                                            : 0;
  if (length == 0 || at + length > text.size()) return false;
  constexpr std::array<char32_t, 5> kLeast{0, 0, 0x80, 0x800, 0x10000};
  character = length == 1 ? first : first & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(at + i) & 0xC0) != 0x80) return false;
    character = character << 6 | (byte(at + i) & 0x3FU);
  }
  at += length;
  return character >= kLeast[length] && character <= 0x10FFFF && !IsBetween(character, 0xD800, 0xDFFF);
}

void AppendUtf8(std::string& text, char32_t character) {
  const auto tail = [&](unsigned shift) { text += static_cast<char>(0x80 | ((character >> shift) & 0x3F)); };
  if (character < 0x80) {
    text += static_cast<char>(character);
  } else if (character < 0x800) {
    text += static_cast<char>(0xC0 | character >> 6);
    tail(0);
  } else {
    text += static_cast<char>(0xE0 | character >> 12);
    tail(6);
    tail(0);
  }
}

// Puts a mark on the letter that was written last, if the code page has the two as one.
void AddMark(std::string& text, char32_t mark, bool& replaced) {
  for (const Mark& known : kMarks) {
    const std::size_t place =
        known.mark == mark && !text.empty() ? known.letters.find(text.back()) : std::string::npos;
    if (place == std::string::npos) continue;
    text.pop_back();
    return AppendUtf8(text, known.marked[place]);
  }
  replaced = true;
}

char32_t Nearest(char32_t character) {
  if (platform::InCodePage(character)) return character;
  for (const LetterRange& range : kRanges) {
    if (character < range.first || character - range.first >= range.letters.size()) continue;
    const char letter = range.letters[character - range.first];
    return letter == '.' ? character : static_cast<char32_t>(letter);
  }
  const auto* const like = std::find_if(kLikenesses.begin(), kLikenesses.end(),
                                        [&](const Likeness& one) { return one.sign == character; });
  if (like != kLikenesses.end()) return static_cast<char32_t>(like->like);
  if (IsBetween(character, 0x218, 0x21B)) return U"SsTt"[character - 0x218];
  return '?';
}

bool IsPlain(char c) {
  return (c >= ' ' && c <= '~') || c == '\n';
}

}  // namespace

std::optional<std::string> InNearestLetters(std::string_view text, bool& replaced) {
  if (std::all_of(text.begin(), text.end(), IsPlain)) return std::string(text);
  std::string near;
  near.reserve(text.size());
  bool changed = false;
  for (std::size_t at = 0; at < text.size();) {
    char32_t character = 0;
    if (!TakeCharacter(text, at, character)) return std::nullopt;
    if (character == '\t') character = ' ';
    if (ShowsNothing(character)) continue;
    if (character == 0x2028 || character == 0x2029) character = '\n';
    if (IsBetween(character, 0x300, 0x36F)) {
      AddMark(near, character, changed);
      continue;
    }
    const char32_t nearest = Nearest(character);
    changed |= nearest != character;
    AppendUtf8(near, nearest);
  }
  replaced |= changed;
  return platform::NearestInCodePage(near, replaced);
}

}  // namespace core
