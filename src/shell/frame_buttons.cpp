#include "shell/frame_buttons.h"

#include "platform/desktop/frame.h"

namespace {

constexpr CaptionButton kButtons[] = {CaptionButton::kMinimize, CaptionButton::kMaximize,
                                      CaptionButton::kClose};

}  // namespace

std::optional<CaptionButton> FrameButtons::At(POINT screenPoint) const {
  RECT window;
  GetWindowRect(frame.Handle(), &window);
  const POINT point = {screenPoint.x - window.left, screenPoint.y - window.top};
  for (const CaptionButton button : kButtons) {
    if (Contains(CaptionButtonRect(SizeOf(window), button), point)) return button;
  }
  return std::nullopt;
}

void FrameButtons::SetState(CaptionButton button, int state) {
  if (StateOf(button) == state) return;
  StateOf(button) = state;
  InvalidateFrame(frame.Handle());
}

void FrameButtons::ShowHover(POINT mouse) {
  const std::optional<CaptionButton> under = At(mouse);
  for (const CaptionButton button : kButtons) {
    if (StateOf(button) != kPressedButton) SetState(button, button == under ? kHotButton : kNormalButton);
  }
}

void FrameButtons::Track(CaptionButton button) {
  SetState(button, kPressedButton);
  WaitForLeftButtonUp();
  if (!IsWindow(frame.Handle())) return;
  SetState(button, kNormalButton);
  if (At(GetCursorPos()) == button) Press(button);
}

void FrameButtons::Press(CaptionButton button) {
  if (button == CaptionButton::kMaximize) frame.Post(WM_SYSCOMMAND, SC_MAXIMIZE, 0);
  if (button == CaptionButton::kMinimize) MinimizeWindow(frame.Handle());
  if (button == CaptionButton::kClose) frame.Post(WM_CLOSE, 0, 0);
}

void FrameButtons::Describe(int item, AccessiblePart* part) const {
  constexpr const char* kNames[] = {"Minimize", "Maximize", "Close"};  // by CaptionButton
  RECT window;
  GetWindowRect(frame.Handle(), &window);
  const RECT place = CaptionButtonRect(SizeOf(window), static_cast<CaptionButton>(item));
  part->role = AccessibleRole::kButton;
  part->name = kNames[item];
  part->state = states[static_cast<std::size_t>(item)] == kPressedButton ? kAccessiblePressed : 0;
  part->pressable = true;
  part->place = {place.left - kFrameInsets.left, place.top - kFrameInsets.top,
                 place.right - kFrameInsets.left, place.bottom - kFrameInsets.top};
}
