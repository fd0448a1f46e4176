#include "platform/desktop/cursor.h"

#include <QApplication>
#include <QCursor>
#include <QFile>
#include <QPixmap>
#include <QWidget>
#include <map>
#include <memory>
#include <string>

#include "platform/desktop/qt/bitmap_pixels.h"
#include "platform/desktop/qt/mouse.h"

struct CursorHandle {
  QCursor cursor;
};

namespace {

HCURSOR shownCursor = nullptr;

// Where a picture's cursor points, in pixels from its top left corner: a line "<name> <x> <y>" of the
// built-in list.
QPoint HotSpotOf(const std::string& name) {
  QFile list(QStringLiteral(":/daybrix/cursors.txt"));
  if (!list.open(QIODevice::ReadOnly)) return {};
  while (!list.atEnd()) {
    const QList<QByteArray> words = list.readLine().simplified().split(' ');
    if (words.size() == 3 && words[0] == name.c_str()) return {words[1].toInt(), words[2].toInt()};
  }
  return {};
}

QCursor MakeCursor(const std::string& name) {
  if (name == IDC_WAIT) return Qt::WaitCursor;
  if (name == IDC_SIZENWSE) return Qt::SizeFDiagCursor;
  const QImage image = LoadBuiltInImage(QString::fromStdString(name));
  if (image.isNull()) return Qt::ArrowCursor;
  const QPoint hotSpot = HotSpotOf(name);
  return QCursor(QPixmap::fromImage(image), hotSpot.x(), hotSpot.y());
}

}  // namespace

HCURSOR LoadCursor(const char* name) {
  static std::map<std::string, std::unique_ptr<CursorHandle>> cursors;
  auto& slot = cursors[name];
  if (slot == nullptr) slot = std::make_unique<CursorHandle>(CursorHandle{MakeCursor(name)});
  return slot.get();
}

HCURSOR SetCursor(HCURSOR cursor) {
  const HCURSOR before = shownCursor;
  shownCursor = cursor;
  QWidget* widget = CursorWidget();
  if (widget != nullptr && cursor != nullptr && widget->cursor() != cursor->cursor)
    widget->setCursor(cursor->cursor);
  return before;
}

void PushWaitCursor() {
  QApplication::setOverrideCursor(Qt::WaitCursor);
}
void PopWaitCursor() {
  QApplication::restoreOverrideCursor();
}
