#include "platform/desktop/overlay.h"

#include <QApplication>
#include <QBitmap>
#include <QImage>
#include <QPainter>
#include <QPointer>
#include <QScreen>
#include <QThread>
#include <QWidget>
#include <algorithm>
#include <vector>

#include "platform/desktop/qt/posted_message.h"
#include "platform/system/clock.h"

namespace {

constexpr int kSliceMs = 2;

// QPainter draws the end points of its lines.
void DrawOpenLine(QPainter& painter, const Segment& line, QPoint origin) {
  const int dx = line.to.x - line.from.x;
  const int dy = line.to.y - line.from.y;
  const int steps = std::max(std::abs(dx), std::abs(dy));
  if (steps == 0) return;
  const QPoint first = QPoint(line.from.x, line.from.y) - origin;
  painter.drawLine(first, first + QPoint(dx - qRound(double(dx) / steps), dy - qRound(double(dy) / steps)));
}

// Where the light line lies: across the dark one, whatever its slope.
QPoint Beside(const Segment& line) {
  const bool flat = std::abs(line.to.x - line.from.x) >= std::abs(line.to.y - line.from.y);
  return flat ? QPoint(0, 1) : QPoint(1, 0);
}

// Keeps the messages of the program back while it lives, and posts them again at its end.
class MessageHold : public QObject {
 public:
  MessageHold() { qApp->installEventFilter(this); }
  ~MessageHold() override {
    // What was posted after the last look must not overtake what is held.
    QCoreApplication::sendPostedEvents(nullptr, PostedMessage::EventType());
    qApp->removeEventFilter(this);
    for (const Held& held : messages) {
      if (held.receiver != nullptr)
        QCoreApplication::postEvent(held.receiver, new PostedMessage(held.message, held.wParam, held.lParam));
    }
  }
  MessageHold(const MessageHold&) = delete;
  MessageHold& operator=(const MessageHold&) = delete;

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (!receiver->isWidgetType()) return false;
    if (event->type() == QEvent::Timer) return true;
    if (event->type() != PostedMessage::EventType()) return false;
    const auto& posted = *static_cast<PostedMessage*>(event);
    messages.push_back({receiver, posted.message, posted.wParam, posted.lParam});
    return true;
  }

 private:
  struct Held {
    QPointer<QObject> receiver;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
  };
  std::vector<Held> messages;
};

}  // namespace

// The window is cut to the lines themselves, which needs no see-through windows of the desktop.
class ScreenOverlay::Surface : public QWidget {
 public:
  explicit Surface(const QRect& area)
      : QWidget(nullptr, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                             Qt::BypassWindowManagerHint | Qt::WindowTransparentForInput |
                             Qt::WindowDoesNotAcceptFocus) {
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setGeometry(area);
  }

  void ShowLines(std::span<const Segment> lines) {
    picture = QImage(size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setPen(Qt::white);
    for (const Segment& line : lines) DrawOpenLine(painter, line, pos() - Beside(line));
    painter.setPen(Qt::black);
    for (const Segment& line : lines) DrawOpenLine(painter, line, pos());
    painter.end();
    const QBitmap mask = QBitmap::fromImage(picture.createAlphaMask());
    const QRegion shape(mask);
    if (shape.isEmpty()) {
      hide();
      return;
    }
    setMask(shape);
    if (isVisible()) {
      repaint();
    } else {
      show();
    }
  }

 protected:
  void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(0, 0, picture); }

 private:
  QImage picture;
};

ScreenOverlay::ScreenOverlay(const RECT& area) {
  if (qApp == nullptr || QGuiApplication::platformName() != QStringLiteral("xcb")) return;
  const QRect desktop = QGuiApplication::primaryScreen()->virtualGeometry();
  const QRect part =
      QRect(QPoint(area.left, area.top), QPoint(area.right - 1, area.bottom - 1)).intersected(desktop);
  if (!part.isEmpty()) surface = std::make_unique<Surface>(part);
}

ScreenOverlay::~ScreenOverlay() = default;

void ScreenOverlay::Show(std::span<const Segment> lines) {
  if (surface != nullptr) surface->ShowLines(lines);
}

void WaitPainting(int ms) {
  const std::int64_t end = platform::TickMs() + ms;
  if (qApp == nullptr) {
    QThread::msleep(static_cast<unsigned long>(std::max(ms, 0)));
    return;
  }
  const MessageHold hold;
  for (std::int64_t left = ms; left > 0; left = end - platform::TickMs()) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    QThread::msleep(
        static_cast<unsigned long>(std::clamp<std::int64_t>(end - platform::TickMs(), 0, kSliceMs)));
  }
}
