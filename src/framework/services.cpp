#include "framework/services.h"

#include <algorithm>

#include "platform/desktop/cursor.h"
#include "platform/desktop/sound.h"
#include "platform/desktop/window.h"
#include "platform/system/program_folder.h"

namespace {

int soundSwitch = 1;
int animationSwitch = 1;

int Midway(int low, int high, int length) {
  return low + (high - low) / 2 - length / 2;
}

// The window under the drag, null when there is none, with the screen point.
HWND WindowUnder(const DragRecord& drag, POINT& screenPoint) {
  screenPoint = ClientToScreen(drag.source, drag.position);
  return WindowFromPoint(screenPoint);
}

LRESULT SendDrag(HWND target, unsigned command, const POINT& screenPoint) {
  return SendMessage(target, WM_COMMAND, command, reinterpret_cast<LPARAM>(&screenPoint));
}

}  // namespace

bool SoundEnabled() {
  return soundSwitch == 1;
}
bool AnimationEnabled() {
  return animationSwitch != 0;
}
void SetSoundEnabled(int enabled) {
  soundSwitch = enabled;
}
void SetAnimationEnabled(int enabled) {
  animationSwitch = enabled;
}

void PlaySound(const char* fileName, UINT) {
  if (SoundEnabled()) PlayWaveFile(platform::SharedFilePath(fileName));
}

bool PlayTone(const std::string& path) {
  return PlayWaveFile(path);
}

void BeginWaitCursor() {
  PushWaitCursor();
}
void EndWaitCursor() {
  PopWaitCursor();
}

void CenterOver(HWND owner, HWND window) {
  const RECT desktop = DesktopRect(owner);
  RECT over = desktop;
  RECT own;
  if (IsWindow(owner)) GetWindowRect(owner, &over);
  if (!GetWindowRect(window, &own)) return;
  int x = Midway(over.left, over.right, Width(own));
  int y = Midway(over.top, over.bottom, Height(own));
  x = std::max(std::min(x, desktop.right - Width(own)), desktop.left);
  y = std::max(std::min(y, desktop.bottom - Height(own)), desktop.top);
  RECT client;
  GetClientRect(window, &client);
  MoveWindow(window, x, y, Width(client), Height(client));
}

// A dialog counts as part of the window it was opened over.
bool IsInForeground(HWND window) {
  while (const HWND parent = GetParent(window)) window = parent;
  return GetForegroundWindow() == window;
}

void DragFeedback(const DragRecord& drag) {
  POINT point;
  const HWND under = WindowUnder(drag, point);
  const bool taken = under != nullptr && (under == drag.source || SendDrag(under, kDropQuery, point) == 1);
  const char* allowed = drag.keys & MK_CONTROL ? "CUR_DRAG_TRUE_COPY" : "CUR_DRAG_TRUE";
  SetCursor(LoadCursor(taken ? allowed : "CUR_DRAG_STOP"));
}

void DragDrop(const DragRecord& drag) {
  POINT point;
  const HWND under = WindowUnder(drag, point);
  if (under != nullptr && under != drag.source)
    SendDrag(under, drag.keys & MK_CONTROL ? kDropCopy : kDropMove, point);
}
