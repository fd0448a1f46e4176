#include "platform/desktop/qt/mouse_wait.h"

#include <QApplication>
#include <QCursor>
#include <QEventLoop>
#include <QMouseEvent>
#include <QTimer>

namespace {

class ReleaseFilter : public QObject {
 public:
  ReleaseFilter(QEventLoop& waiting, const std::function<void(QPoint)>& whenMoved)
      : loop(waiting), moved(whenMoved) {}

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (!receiver->isWidgetType()) return false;
    if (event->type() == QEvent::MouseMove && moved) {
      moved(static_cast<QMouseEvent*>(event)->globalPosition().toPoint());
      return true;
    }
    if (event->type() != QEvent::MouseButtonRelease) return false;
    if (static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
    loop.quit();
    return true;
  }

 private:
  QEventLoop& loop;
  const std::function<void(QPoint)>& moved;
};

// A release that went to another program is noticed after this time.
constexpr int kLookMs = 200;

// A mouse that moved less is still clicking: well within what counts as a double click.
constexpr int kStillPixels = 2;

void WaitIn(QEventLoop& loop, const std::function<void(QPoint)>& moved) {
  ReleaseFilter filter(loop, moved);
  qApp->installEventFilter(&filter);
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &loop, [&loop] {
    if (!(QApplication::mouseButtons() & Qt::LeftButton)) loop.quit();
  });
  look.start(kLookMs);
  loop.exec();
}

}  // namespace

void WaitForRelease(const std::function<void(QPoint)>& moved) {
  QEventLoop loop;
  WaitIn(loop, moved);
}

std::optional<QPoint> WaitForDrag() {
  const QPoint start = QCursor::pos();
  std::optional<QPoint> dragged;
  QEventLoop loop;
  WaitIn(loop, [&](QPoint mouse) {
    if ((mouse - start).manhattanLength() <= kStillPixels) return;
    dragged = mouse;
    loop.quit();
  });
  return dragged;
}
