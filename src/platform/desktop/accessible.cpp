#include "platform/desktop/accessible.h"

#include <QAccessible>
#include <QWidget>

#include "platform/desktop/qt/accessible_window.h"
#include "platform/desktop/qt/window_table.h"

void AnnounceChange(HWND window, AccessibleChange change) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || !entry->created || entry->destroying) return;
  QWidget* widget = entry->Outer();
  // Who asks whether anybody listens connects to the session's bus, for which nobody waits before a window
  // is seen.
  if (!widget->isVisible() || !AccessibilityIsHeard()) return;
  switch (change) {
    case AccessibleChange::kCurrentItem:
      if (QAccessibleInterface* item = CurrentAccessibleItem(widget)) {
        QAccessibleEvent selected(item, QAccessible::Selection);
        TellAccessibility(&selected);
        AnnounceFocus(widget);
      }
      break;
    case AccessibleChange::kItems: {
      QAccessibleEvent reordered(widget, QAccessible::ObjectReorder);
      TellAccessibility(&reordered);
      break;
    }
    case AccessibleChange::kValue: {
      QAccessibleValueChangeEvent changed(widget, AccessibleValue(window));
      TellAccessibility(&changed);
      break;
    }
  }
}
