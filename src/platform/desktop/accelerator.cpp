#include "platform/desktop/accelerator.h"

#include <QGuiApplication>

#include "platform/desktop/window.h"

bool TranslateAccelerator(HWND window, std::span<const Accelerator> table, const MessageRecord& message) {
  if (message.message != WM_KEYDOWN && message.message != WM_SYSKEYDOWN) return false;
  const Qt::KeyboardModifiers held = QGuiApplication::keyboardModifiers();
  if (held & Qt::ShiftModifier) return false;
  const UINT modifiers =
      FVIRTKEY | (held & Qt::ControlModifier ? FCONTROL : 0) | (held & Qt::AltModifier ? FALT : 0);
  for (const Accelerator& entry : table) {
    if (entry.key != message.wParam || entry.modifiers != modifiers) continue;
    SendMessage(window, WM_COMMAND, MakeWParam(entry.command, 1), 0);
    return true;
  }
  return false;
}
