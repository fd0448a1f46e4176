#include "shell/intro_pane.h"

#include <string>

#include "framework/drawing.h"
#include "framework/fonts.h"

namespace {

constexpr UINT kFrameTimer = 100;
constexpr int kFrameMs = 4000;
constexpr RECT kFramePlace = {10, 154, 80, 204};  // of the frames, in the picture

constexpr int kStripHeight = 26;
constexpr int kStripTextLeft = 15;
constexpr SIZE kTallPictureSize = {140, 250};
constexpr SIZE kWidePictureSize = {311, 86};

LazyBitmap NumberedPicture(int id) {
  return LazyBitmap(std::to_string(id));
}

}  // namespace

IntroPicture::IntroPicture(const char* newProgram, int newPictureId, COLORREF newBackground)
    : program(newProgram), background(newBackground), picture(NumberedPicture(newPictureId)) {
  if (newPictureId != kAnimatedPicture) return;
  for (int number = 1; number <= kLastFrame; ++number)
    frames.push_back(NumberedPicture(newPictureId + number));
}

void IntroPicture::InvalidateFrame() {
  Invalidate(&kFramePlace, 0);
}

void IntroPicture::Paint(HDC hdc, const RECT& client) const {
  if (background != kNoColour) hdc->FillRect(client, background);
  if (const Bitmap* whole = picture.Get()) hdc->DrawBitmap(*whole, 0, 0);
  const Bitmap* over =
      frame >= 1 && !frames.empty() ? frames[static_cast<std::size_t>(frame) - 1].Get() : nullptr;
  if (over != nullptr) hdc->DrawBitmap(*over, kFramePlace.left, kFramePlace.top);
  Line(hdc, client.left, client.bottom - 1, client.right, client.bottom - 1);
  Line(hdc, client.right - 1, client.top, client.right - 1, client.bottom);
}

void IntroPicture::Describe(int, AccessiblePart* part) {
  part->role = AccessibleRole::kPicture;
  part->name = program;
}

ZarfIntroPane::ZarfIntroPane(const char* newName, const char* newProgram, const PaneColours& newColours,
                             const Look& newLook)
    : ZarfPane(newName, newColours),
      program(newProgram),
      look(newLook),
      picture(newProgram, newLook.pictureId, newLook.pictureBackground) {}

LRESULT ZarfIntroPane::OnCreate(const MessageRecord&) {
  return picture.Create(this) ? 0 : -1;
}

LRESULT ZarfIntroPane::OnSize(const MessageRecord&) {
  const RECT client = ClientArea();
  const bool tall = look.layout == Layout::kTallPicture;
  largeTextRect = tall ? RECT{150, 35, client.right, 54} : RECT{10, 130, client.right, 160};
  const SIZE size = tall ? kTallPictureSize : kWidePictureSize;
  picture.Move(client.left, client.top + kStripHeight, size.cx, size.cy, 1);
  return 0;
}

void ZarfIntroPane::Paint(HDC hdc, const RECT& client) const {
  hdc->FillRect(client, Colours().background);
  const RECT stripRect{client.left, client.top, client.right, client.top + kStripHeight};
  if (const Bitmap* ground = strip.Get()) hdc->StretchBitmap(*ground, stripRect);
  if (const Bitmap* corner = stripCorner.Get()) hdc->DrawBitmap(*corner, client.left, client.top);
  hdc->SelectFont(GetFont(FontSmall, 700));
  hdc->SetTextColor(Colours().stripText);
  hdc->DrawText(program.c_str(),
                {client.left + kStripTextLeft, stripRect.top, stripRect.right, stripRect.bottom},
                DT_SINGLELINE | DT_VCENTER);
  hdc->SelectFont(GetFont(FontArial, 700));
  hdc->SetTextColor(look.largeText);
  hdc->DrawText(program.c_str(), largeTextRect, DT_LEFT);
}

bool ZarfIntroPane::OnEnter() {
  if (!look.animated || picture.Frame() != 0 || timerRuns) return true;
  SetTimer(hwnd, kFrameTimer, kFrameMs);
  timerRuns = true;
  return true;
}

LRESULT ZarfIntroPane::OnTimer(const MessageRecord& record) {
  if (record.wParam != kFrameTimer || !timerRuns) return 0;
  if (picture.Frame() == IntroPicture::kLastFrame) {
    StopTimer();
    return 0;
  }
  picture.SetFrame(picture.Frame() + 1);
  picture.InvalidateFrame();
  return 0;
}

void ZarfIntroPane::StopTimer() {
  if (timerRuns) KillTimer(hwnd, kFrameTimer);
  timerRuns = false;
}

bool ZarfIntroPane::CanLeave() {
  StopTimer();
  picture.SetFrame(IntroPicture::kLastFrame);
  return true;
}

LRESULT ZarfIntroPane::OnClose(const MessageRecord&) {
  StopTimer();
  if (IsWindow(picture.Handle())) picture.Destroy();
  return 0;
}

void ZarfIntroPane::Describe(int item, AccessiblePart* part) {
  if (item == kWholeWindow) {
    ZarfPane::Describe(item, part);
    part->items = 1;
    return;
  }
  part->role = AccessibleRole::kText;
  part->name = program;
  part->place = largeTextRect;
}

int ZarfIntroPane::ItemAt(POINT point) {
  return Contains(largeTextRect, point) ? 0 : -1;
}
