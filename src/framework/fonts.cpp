#include "framework/fonts.h"

#include <array>

namespace {

constexpr int kKinds = 8;
constexpr std::array<FontSpec, kKinds> kFonts = {{
    {"Small Fonts", -9, 0, false},
    {"MS Sans Serif", -11, 0, false},
    {"Arial", 20, 0, false},
    {"Arial", 35, 0, false},
    {"Small Fonts", -9, 0, true},
    {"MS Sans Serif", -11, 0, true},
    {"Arial", 20, 0, true},
    {"Arial", 35, 0, true},
}};

struct FontSlots {
  HFONT normal = nullptr;
  HFONT bold = nullptr;
};
std::array<FontSlots, kKinds> fontSlots;

}  // namespace

HFONT GetFont(FontKind kind, int weight) {
  FontSlots& slots = fontSlots[kind];
  if (weight == 400 && slots.normal != nullptr) return slots.normal;
  if (weight == 700 && slots.bold != nullptr) return slots.bold;
  FontSpec wanted = kFonts[kind];
  wanted.weight = weight;
  // What was in the slot may be selected somewhere: it stays alive.
  HFONT& slot = weight == 400 ? slots.normal : slots.bold;
  slot = CreateFont(wanted);
  return slot;
}

void CreateFonts() {
  for (int kind = 0; kind < kKinds; ++kind) {
    GetFont(static_cast<FontKind>(kind), 400);
    GetFont(static_cast<FontKind>(kind), 700);
  }
}

void DeleteFonts() {
  for (FontSlots& slots : fontSlots) {
    DeleteFont(slots.normal);
    DeleteFont(slots.bold);
    slots = {};
  }
}

int TextHeight(HDC, HFONT font) {
  const TextMetrics metrics = GetTextMetrics(font);
  return metrics.height + metrics.externalLeading;
}

DWORD TextExtent(HDC, HFONT font, const char* text) {
  const SIZE size = MeasureText(font, text);
  return static_cast<DWORD>(MakeWParam(static_cast<unsigned>(size.cx), static_cast<unsigned>(size.cy)));
}
