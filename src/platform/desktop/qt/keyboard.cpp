#include "platform/desktop/qt/keyboard.h"

#include <QChar>
#include <QKeyEvent>
#include <string_view>

#include "platform/desktop/messages.h"

namespace {

// The row above the letters has the digits whatever it types: on many keyboards these are marks. 0 for other
// keys and where the platform does not number its keys.
unsigned DigitOfRow(const QKeyEvent& event) {
  constexpr unsigned kFirstInRow = 10;  // as X and Wayland number them
  const unsigned place = event.nativeScanCode() - kFirstInRow;
  return place < 10 ? static_cast<unsigned>("1234567890"[place]) : 0;
}

// Whether the key types a character of an alphabet other than the Latin one: its layout has none of our
// letters.
bool TypesOtherAlphabet(int key) {
  if (key > QChar::LastValidCodePoint) return false;  // a key with a name
  switch (QChar::script(static_cast<char32_t>(key))) {
    case QChar::Script_Unknown:
    case QChar::Script_Inherited:
    case QChar::Script_Common:
    case QChar::Script_Latin:
      return false;
    default:
      return true;
  }
}

// The letter that the key's place has on a Latin keyboard; 0 for other places.
unsigned LetterOfPlace(const QKeyEvent& event) {
  struct Row {
    unsigned first;  // as X and Wayland number them
    std::string_view letters;
  };
  constexpr Row kRows[] = {{24, "QWERTYUIOP"}, {38, "ASDFGHJKL"}, {52, "ZXCVBNM"}};
  for (const auto& [first, letters] : kRows) {
    const unsigned place = event.nativeScanCode() - first;
    if (place < letters.size()) return static_cast<unsigned>(letters[place]);
  }
  return 0;
}

}  // namespace

unsigned KeyOf(const QKeyEvent& event) {
  const int key = event.key();
  if (key == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier) return VK_APPS;
  if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) {
    return static_cast<unsigned>(key);
  }
  if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return VK_F1 + static_cast<unsigned>(key - Qt::Key_F1);
  if (const unsigned digit = DigitOfRow(event); digit != 0 && event.modifiers() & Qt::AltModifier)
    return digit;
  if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier) && TypesOtherAlphabet(key))
    return LetterOfPlace(event);
  switch (key) {
    case Qt::Key_Backspace:
      return VK_BACK;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return VK_TAB;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return VK_RETURN;
    case Qt::Key_Escape:
      return VK_ESCAPE;
    case Qt::Key_Space:
      return VK_SPACE;
    case Qt::Key_PageUp:
      return VK_PRIOR;
    case Qt::Key_PageDown:
      return VK_NEXT;
    case Qt::Key_End:
      return VK_END;
    case Qt::Key_Home:
      return VK_HOME;
    case Qt::Key_Left:
      return VK_LEFT;
    case Qt::Key_Up:
      return VK_UP;
    case Qt::Key_Right:
      return VK_RIGHT;
    case Qt::Key_Down:
      return VK_DOWN;
    case Qt::Key_Insert:
      return VK_INSERT;
    case Qt::Key_Delete:
      return VK_DELETE;
    case Qt::Key_Menu:
      return VK_APPS;
    default:
      return 0;
  }
}

UINT KeyDownMessage(const QKeyEvent& event) {
  return event.modifiers() & Qt::AltModifier ? WM_SYSKEYDOWN : WM_KEYDOWN;
}
