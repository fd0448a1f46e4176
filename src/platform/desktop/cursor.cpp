#include "platform/desktop/cursor.h"

#include <QApplication>
#include <QCursor>
#include <QFile>
#include <QPixmap>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/desktop/frame.h"
#include "platform/desktop/qt/bitmap_pixels.h"
#include "platform/desktop/qt/mouse.h"
#include "platform/desktop/window.h"

struct CursorHandle {
  QCursor cursor;
};

namespace {

HCURSOR shownCursor = nullptr;
// The window over which the cursor is hidden.
QPointer<QWidget> blanked;
// For each wait cursor asked for, whether it is shown.
std::vector<bool> waitCursorShown;

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
  if (name == IDC_ARROW) return Qt::ArrowCursor;
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
  if (widget != nullptr && widget != blanked && cursor != nullptr && widget->cursor() != cursor->cursor)
    widget->setCursor(cursor->cursor);
  return before;
}

void ShowCursor(bool show) {
  if (show && blanked != nullptr) {
    QWidget* widget = blanked;
    blanked.clear();
    widget->setCursor(shownCursor != nullptr ? shownCursor->cursor : QCursor(Qt::ArrowCursor));
  } else if (!show && GetCapture() != nullptr && blanked == nullptr) {
    blanked = CursorWidget();
    if (blanked != nullptr) blanked->setCursor(Qt::BlankCursor);
  }
}

bool SetCursorPos(POINT screenPoint) {
  // Qt would only tell its own windows of such a move, and take it back with the next real one.
  if (!WindowsKnowTheirPlace()) return false;
  const QPoint wanted(screenPoint.x, screenPoint.y);
  QCursor::setPos(wanted);
  constexpr int kRounding = 2;  // on screens of a broken scale
  return (QCursor::pos() - wanted).manhattanLength() <= kRounding;
}

void PushWaitCursor() {
  // The first use of a cursor reads the desktop's cursor theme: not before there is a window to show it over.
  const QWindowList windows = QGuiApplication::topLevelWindows();
  const bool seen =
      std::any_of(windows.begin(), windows.end(), [](const QWindow* window) { return window->isExposed(); });
  waitCursorShown.push_back(seen);
  if (seen) QApplication::setOverrideCursor(Qt::WaitCursor);
}

void PopWaitCursor() {
  if (waitCursorShown.empty()) return;
  if (waitCursorShown.back()) QApplication::restoreOverrideCursor();
  waitCursorShown.pop_back();
}
