// Windows of the program as Qt's accessibility sees them: it asks for an interface of a widget and gets one
// that asks the window in turn, by the messages of accessible.h. Interfaces are made when somebody asks and
// go with the widget; one whose window is gone is not valid and answers nothing.
#pragma once

#include <QVariant>

#include "platform/desktop/types.h"

class QAccessibleEvent;
class QAccessibleInterface;
class QObject;
class QString;
class QWidget;

// Qt's factory: an interface for a widget that is a window of ours, null for any other object.
QAccessibleInterface* MakeAccessible(const QString& className, QObject* object);
// Whether anybody listens to what changes, and telling them.
bool AccessibilityIsHeard();
void TellAccessibility(QAccessibleEvent* event);
// Takes the place of Qt's listeners, for tests; null gives it back.
void SetAccessibilityListener(void (*listener)(QAccessibleEvent* event));

// Makes an open menu a child of the window it was opened for, where Qt's own is nobody's; null ends that.
void ShowAccessibleMenu(HWND owner, QWidget* menu);

// The interface of the item that the keyboard works on; null for none.
QAccessibleInterface* CurrentAccessibleItem(QWidget* widget);
// Tells that the current item of a widget has the focus, if the widget has it.
void AnnounceFocus(QWidget* widget);
// The position of a slider, the value of anything else.
QVariant AccessibleValue(HWND window);
