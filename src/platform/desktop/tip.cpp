#include "platform/desktop/tip.h"

#include <QApplication>
#include <QTextDocument>
#include <QToolTip>
#include <QWidget>

#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/window_table.h"

void ShowTip(HWND window, POINT point, const char* text) {
  const WindowEntry* entry = FindWindowEntry(window);
  // A menu has the mouse to itself; a tip would cover it.
  if (entry == nullptr || QApplication::activePopupWidget() != nullptr) return;
  UseDialogFont();
  QString shown = TextFromCodePage(text);
  // Angle brackets in what users have written are no markup.
  if (Qt::mightBeRichText(shown)) {
    shown = QStringLiteral("<p style='white-space:pre'>") + shown.toHtmlEscaped() + QStringLiteral("</p>");
  }
  QToolTip::showText(entry->widget->mapToGlobal(QPoint(point.x, point.y)), shown, entry->widget);
}
