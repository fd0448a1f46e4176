#include "platform/desktop/tip.h"

#include <QApplication>
#include <QToolTip>
#include <QWidget>

#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/window_table.h"

void ShowTip(HWND window, POINT point, const char* text) {
  const WindowEntry* entry = FindWindowEntry(window);
  // A menu has the mouse to itself; a tip would cover it.
  if (entry == nullptr || QApplication::activePopupWidget() != nullptr) return;
  UseDialogFont();
  QToolTip::showText(entry->widget->mapToGlobal(QPoint(point.x, point.y)), TextFromCodePage(text),
                     entry->widget);
}
