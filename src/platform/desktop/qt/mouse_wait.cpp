#include "platform/desktop/qt/mouse_wait.h"

#include <QApplication>
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

}  // namespace

void WaitForRelease(const std::function<void(QPoint)>& moved) {
  QEventLoop loop;
  ReleaseFilter filter(loop, moved);
  qApp->installEventFilter(&filter);
  QTimer look;
  QObject::connect(&look, &QTimer::timeout, &loop, [&loop] {
    if (!(QApplication::mouseButtons() & Qt::LeftButton)) loop.quit();
  });
  look.start(kLookMs);
  loop.exec();
}
