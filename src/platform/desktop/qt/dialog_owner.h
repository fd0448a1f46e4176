// What dialogs and message boxes stand over.
#pragma once

#include "platform/desktop/types.h"

class QWidget;

// The top-level widget of a window; null for none. A window that was only just shown has no place on the
// screen yet: this waits, at most a second, until it has, so that what opens over it opens there.
QWidget* ReadyOwner(HWND window);
// Gives the keyboard back to it when a dialog over it has closed, which not every window manager does.
void ReturnToOwner(HWND window);
// The title bar of dialogs: a title and a close button.
void TrimDialogFrame(QWidget& dialog);
