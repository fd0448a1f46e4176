#include "shell/frame_painting.h"

#include <memory>

#include "framework/drawing.h"
#include "framework/fonts.h"
#include "framework/pane.h"
#include "shell/skins.h"

namespace {

// The pictures of a caption button where the skin has none.
constexpr const char* kBuiltInButtons[3][kButtonStates] = {
    {"minimize_button1.bmp", "minimize_button2.bmp", "minimize_button3.bmp"},
    {"maximize_button1.bmp", "maximize_button2.bmp", "maximize_button3.bmp"},
    {"close_button1.bmp", "close_button2.bmp", "close_button3.bmp"},
};

// The title band where the skin has neither colour nor picture for it: something must cover what was there
// before.
constexpr COLORREF kPlainTitle = RGB(212, 210, 218);

void StretchIfThere(HDC hdc, const std::unique_ptr<Bitmap>& picture, const RECT& rect) {
  if (picture != nullptr) hdc->StretchBitmap(*picture, rect);
}

void PaintOutline(HDC hdc, SIZE window, int titleHeight, const SkinRecord& skin) {
  const auto [width, height] = window;
  hdc->SetPenColor(skin.colorFrameUp);
  Line(hdc, 1, titleHeight, 1, height);
  hdc->SetPenColor(skin.colorFrame);
  Line(hdc, 1, 0, width, 0);
  hdc->SetPenColor(skin.colorFrameDown);
  Line(hdc, width - 1, titleHeight, width - 1, height);
  Line(hdc, width, height - 1, 0, height - 1);
}

void PaintButton(HDC hdc, SIZE window, CaptionButton button, const SkinRecord& skin, int state) {
  const auto* pictures = button == CaptionButton::kMinimize   ? skin.minimize
                         : button == CaptionButton::kMaximize ? skin.maximize
                                                              : skin.close;
  const auto shown = static_cast<std::size_t>(state);
  const RECT square = CaptionButtonRect(window, button);
  if (const Bitmap* picture = pictures[shown].get()) {
    hdc->DrawBitmap(*picture, square.left, square.top);
  } else {
    DrawBmpResource(hdc, square.left, square.top, kBuiltInButtons[static_cast<std::size_t>(button)][shown]);
  }
}

}  // namespace

void PaintFrame(HDC hdc, SIZE window, const SkinRecord& skin, const std::string& title,
                const CaptionStates& states) {
  const auto [width, height] = window;
  const RECT titleRect = TitleRect(window);
  const int bandBottom = titleRect.bottom + 1;
  hdc->FillRect({0, 0, kFrameX, height}, skin.colorFrame);
  hdc->FillRect({width - kFrameX, 0, width, height}, skin.colorFrame);
  hdc->FillRect({0, height - (kSizeFrameY + kBorderY), width, height}, skin.colorFrame);
  if (skin.colorTitle != kUnsetColour) {
    hdc->FillRect({0, 0, width, bandBottom}, skin.colorTitle);
  } else if (skin.title == nullptr) {
    hdc->FillRect({0, 0, width, bandBottom}, kPlainTitle);
  }
  StretchIfThere(hdc, skin.title, {-1, 0, width + 1, bandBottom});
  StretchIfThere(hdc, skin.titleLeft, {0, 1, 4, bandBottom});
  StretchIfThere(hdc, skin.titleRight, {width - 4, 1, width, bandBottom});
  PaintOutline(hdc, window, Height(titleRect), skin);
  hdc->SelectFont(GetFont(FontSans, 700));
  hdc->SetTextColor(skin.colorTextTitle);
  hdc->DrawText(title.c_str(), titleRect, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  for (const CaptionButton button :
       {CaptionButton::kMinimize, CaptionButton::kMaximize, CaptionButton::kClose}) {
    PaintButton(hdc, window, button, skin, states[static_cast<std::size_t>(button)]);
  }
}

void PaintBands(HDC hdc, SIZE client, const SkinRecord& skin, const ZarfPane& pane) {
  const auto [right, bottom] = client;
  const PaneColours& colours = pane.Colours();
  const auto fillSides = [hdc](const RECT& r, int upright, COLORREF colour) {
    hdc->FillRect({r.left, r.top, r.right, r.top + 10}, colour);
    hdc->FillRect({r.left, r.top, r.left + upright, r.bottom}, colour);
    hdc->FillRect({r.left, r.bottom - 10, r.right, r.bottom}, colour);
    hdc->FillRect({r.right - upright, r.top, r.right, r.bottom}, colour);
  };
  fillSides({5, 48, right - 5, bottom - 13}, 10, colours.band1);
  fillSides({10, 57, right - 10, bottom - 20}, 12, colours.band3);
  const RECT inner = {10, 57, right - 15, bottom - 26};
  hdc->FillRect({inner.left + 12, inner.bottom - 15, inner.right - 2, inner.bottom + 1}, colours.band2);
  hdc->FillRect({inner.right - 8, inner.top + 12, inner.right - 2, inner.bottom + 1}, colours.band2);
  hdc->FillRect({inner.left + 7, inner.top + 9, inner.right - 7, inner.top + 37}, colours.band4);
  if (skin.resize != nullptr) hdc->DrawBitmap(*skin.resize, right - 11, bottom - 11);
}
