// Where mouse events go. Qt sends everything between press and release to the widget that was pressed;
// windows of the program expect it where the cursor is, unless one of them has captured the mouse.
#pragma once

#include <Qt>

#include "platform/desktop/types.h"

class QMouseEvent;
class QWidget;

void RouteMouseEvent(QWidget* receiver, QMouseEvent* event);
// The MK_... flags.
unsigned MouseKeys(Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers);
// The widget whose cursor SetCursor changes from now on.
void NoteUnderMouse(QWidget* widget);
// Takes the capture from a window that is going.
void ForgetCapture(HWND window);
// Whose cursor is shown: the window with the capture or the one last under the mouse.
QWidget* CursorWidget();
