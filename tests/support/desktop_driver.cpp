#include "support/desktop_driver.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <QWheelEvent>
#include <QWindow>
#include <utility>

#include "platform/desktop/application.h"
#include "platform/desktop/dialog.h"
#include "platform/desktop/message_box.h"
#include "platform/desktop/qt/window_table.h"

namespace {

constexpr int kUnansweredMs = 8000;

// Ends the desktop layer before the process's static objects go: it leans on some of them.
class StopAtEnd : public testing::Environment {
 public:
  void TearDown() override {
    if (started) StopDesktop();
  }
  bool started = false;
};
auto* const stopAtEnd = static_cast<StopAtEnd*>(testing::AddGlobalTestEnvironment(new StopAtEnd));

void StartOnce() {
  if (stopAtEnd->started) return;
  stopAtEnd->started = true;
  if (!qgetenv("QT_QPA_PLATFORM").startsWith("offscreen")) qputenv("QT_QPA_PLATFORM", "offscreen");
  static int argc = 1;
  static char name[] = "test";
  static char* argv[] = {name, nullptr};
  ASSERT_TRUE(StartDesktop(argc, argv));
}

QWidget* WidgetFor(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  return entry != nullptr ? entry->widget : nullptr;
}

QWidget* ControlOf(HWND dialog, int id) {
  QWidget* control = WidgetFor(GetDlgItem(dialog, id));
  EXPECT_NE(control, nullptr) << "no control " << id;
  return control;
}

struct Spot {
  QWindow* window = nullptr;
  QPoint point;
};

Spot SpotOf(HWND window, POINT point) {
  QWidget* widget = WidgetFor(window);
  if (widget == nullptr || widget->window()->windowHandle() == nullptr) {
    ADD_FAILURE() << "no window to point at";
    return {};
  }
  return {widget->window()->windowHandle(), widget->mapTo(widget->window(), QPoint(point.x, point.y))};
}

Qt::KeyboardModifiers ModifiersOf(unsigned keys) {
  Qt::KeyboardModifiers modifiers;
  if (keys & MK_SHIFT) modifiers |= Qt::ShiftModifier;
  if (keys & MK_CONTROL) modifiers |= Qt::ControlModifier;
  return modifiers;
}

Qt::Key KeyFor(unsigned key) {
  constexpr std::pair<unsigned, Qt::Key> kKeys[] = {
      {VK_BACK, Qt::Key_Backspace}, {VK_TAB, Qt::Key_Tab},     {VK_RETURN, Qt::Key_Return},
      {VK_ESCAPE, Qt::Key_Escape},  {VK_SPACE, Qt::Key_Space}, {VK_PRIOR, Qt::Key_PageUp},
      {VK_NEXT, Qt::Key_PageDown},  {VK_APPS, Qt::Key_Menu},   {VK_END, Qt::Key_End},
      {VK_HOME, Qt::Key_Home},      {VK_LEFT, Qt::Key_Left},   {VK_UP, Qt::Key_Up},
      {VK_RIGHT, Qt::Key_Right},    {VK_DOWN, Qt::Key_Down},   {VK_INSERT, Qt::Key_Insert},
      {VK_DELETE, Qt::Key_Delete}};
  for (const auto& [given, meant] : kKeys) {
    if (given == key) return meant;
  }
  if (key >= VK_F1 && key < VK_F1 + 12) return static_cast<Qt::Key>(Qt::Key_F1 + (key - VK_F1));
  return static_cast<Qt::Key>(key);
}

void UseButton(QTest::MouseAction action, HWND window, POINT point, Qt::MouseButton button = Qt::LeftButton,
               unsigned keys = 0) {
  const Spot spot = SpotOf(window, point);
  if (spot.window != nullptr) QTest::mouseEvent(action, spot.window, button, ModifiersOf(keys), spot.point);
  QApplication::processEvents();
  QApplication::sendPostedEvents();
}

// Only an active window gets keys.
void Activate(QWidget* top) {
  top->activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(top, 3000));
}

QString PlainText(QString text) {
  text = text.section(u'\t', 0, 0);
  text.replace(QStringLiteral("&&"), QStringLiteral("\x01")).remove(u'&').replace(u'\x01', u'&');
  return text;
}

}  // namespace

struct DesktopDriver::Answer {
  enum Kind { kMessageBox, kDialog, kMenu, kFile } kind;
  std::string text;
  int answer = 0;
  std::function<void(HWND)> callback;
};

struct DesktopDriver::Watch : QObject {
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (event->type() == QEvent::Paint && receiver->isWidgetType()) ++paints;
    return false;
  }

  int paints = 0;
  QTimer timer;
  QList<QPointer<QWidget>> handled;  // what was answered and has yet to close
  QWidget* current = nullptr;        // the one in front
  QElapsedTimer since;               // how long it has been in front
};

DesktopDriver::DesktopDriver() : watch(nullptr) {
  StartOnce();
  watch = new Watch;
  qApp->installEventFilter(watch);
  QObject::connect(&watch->timer, &QTimer::timeout, [this] { Poll(); });
  watch->timer.start(5);
}

DesktopDriver::~DesktopDriver() {
  delete watch;
  for (const Answer& answer : answers) ADD_FAILURE() << "never asked for: " << answer.text;
}

void DesktopDriver::Poll() {
  watch->handled.removeIf(
      [](const QPointer<QWidget>& widget) { return widget == nullptr || !widget->isVisible(); });
  QWidget* open = QApplication::activePopupWidget();
  if (open == nullptr) open = QApplication::activeModalWidget();
  if (open == nullptr || !open->isVisible()) return;
  if (open->findChild<QProgressBar*>() != nullptr) return;  // nothing to answer: it goes by itself
  if (watch->handled.contains(open)) {
    if (watch->current != open) {
      watch->current = open;
      watch->since.start();
    }
    if (watch->since.elapsed() < kUnansweredMs) return;
    ADD_FAILURE() << "left open: " << open->windowTitle().toStdString();
    open->close();
    return;
  }
  watch->handled.append(open);
  watch->current = open;
  watch->since.start();
  const Answer::Kind kind = qobject_cast<QMenu*>(open) != nullptr         ? Answer::kMenu
                            : qobject_cast<QMessageBox*>(open) != nullptr ? Answer::kMessageBox
                            : qobject_cast<QFileDialog*>(open) != nullptr ? Answer::kFile
                            : open->inherits("QPrintDialog")              ? Answer::kFile
                                                                          : Answer::kDialog;
  if (answers.empty() || answers.front().kind != kind) {
    auto* box = qobject_cast<QMessageBox*>(open);
    ADD_FAILURE() << "nobody expected: "
                  << (box != nullptr ? box->text() : open->windowTitle()).toStdString();
    open->close();
    return;
  }
  const Answer answer = answers.front();
  answers.erase(answers.begin());
  // Not from inside the timer: it does not tick while its own tick is handled, and an answer may open the
  // next dialog.
  QTimer::singleShot(0, open, [this, answer, open] { Give(answer, open); });
}

void DesktopDriver::Give(const Answer& answer, QWidget* open) {
  if (qobject_cast<QMenu*>(open) != nullptr) {
    watch->handled.removeAll(open);  // the same menu may be opened again before the next look
    AnswerMenu(answer);
    return;
  }
  if (auto* files = qobject_cast<QFileDialog*>(open)) {
    AnswerFileDialog(answer, *files);
    return;
  }
  if (open->inherits("QPrintDialog")) {
    // Without a printer it prints to a file.
    auto* name = open->findChild<QLineEdit*>(QStringLiteral("filename"));
    if (name != nullptr) name->setText(QString::fromStdString(answer.text));
    QMetaObject::invokeMethod(open, name == nullptr || answer.text.empty() ? "reject" : "accept");
    return;
  }
  auto* box = qobject_cast<QMessageBox*>(open);
  if (box == nullptr) {
    answer.callback(HandleOf(open));
    return;
  }
  EXPECT_NE(CodePageFromText(box->text()).find(answer.text), std::string::npos) << box->text().toStdString();
  const auto button = answer.answer == IDYES  ? QMessageBox::Yes
                      : answer.answer == IDNO ? QMessageBox::No
                                              : QMessageBox::Ok;
  if (QAbstractButton* choice = box->button(button)) {
    choice->click();
  } else {
    ADD_FAILURE() << "the box has no such answer";
    box->close();
  }
}

void DesktopDriver::AnswerMenu(const Answer& answer) {
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  QAction* start = menu->activeAction();
  const bool seen = start != nullptr && menu->rect().contains(menu->actionGeometry(start));
  lastMenuStart = seen ? CodePageFromText(PlainText(start->text())) : "";
  lastMenu.clear();
  QAction* chosen = nullptr;
  for (QAction* action : menu->actions()) {
    const std::string text = CodePageFromText(PlainText(action->text()));
    lastMenu.push_back(action->isSeparator() ? "-" : action->isEnabled() ? text : "(" + text + ")");
    if (!action->isSeparator() && text == answer.text) chosen = action;
  }
  if (chosen == nullptr) {
    EXPECT_TRUE(answer.text.empty()) << "no item " << answer.text;
    QTest::keyClick(menu, Qt::Key_Escape);
    return;
  }
  menu->setActiveAction(chosen);
  QTest::keyClick(menu, Qt::Key_Return);
}

void DesktopDriver::AnswerFileDialog(const Answer& answer, QFileDialog& dialog) {
  lastFileKinds.clear();
  for (const QString& kind : dialog.nameFilters()) lastFileKinds.push_back(kind.toStdString());
  auto* name = dialog.findChild<QLineEdit*>();
  if (answer.text.empty() || name == nullptr) {
    EXPECT_TRUE(answer.text.empty()) << "nothing to type a name into";
    dialog.reject();
    return;
  }
  name->setText(QString::fromStdString(answer.text));
  QTest::keyClick(name, Qt::Key_Return);
}

void DesktopDriver::Click(HWND window, POINT point, unsigned keys) {
  UseButton(QTest::MouseClick, window, point, Qt::LeftButton, keys);
}

void DesktopDriver::DoubleClick(HWND window, POINT point) {
  // A pause, so that clicks made before do not count.
  QTest::qWait(QApplication::doubleClickInterval() + 10);
  UseButton(QTest::MouseDClick, window, point);
}

void DesktopDriver::RightClick(HWND window, POINT point) {
  UseButton(QTest::MouseClick, window, point, Qt::RightButton);
}

void DesktopDriver::MouseDown(HWND window, POINT point) {
  UseButton(QTest::MousePress, window, point);
}

void DesktopDriver::MouseUp(HWND window, POINT point) {
  UseButton(QTest::MouseRelease, window, point);
}

void DesktopDriver::PressAndRelease(HWND window, POINT press, POINT release) {
  constexpr int kHeldMs = 30;
  const Spot down = SpotOf(window, press);
  const Spot up = SpotOf(window, release);
  if (down.window == nullptr) return;
  QTimer::singleShot(kHeldMs, down.window, [up] {
    QCursor::setPos(up.window->mapToGlobal(up.point));
    QTest::mouseEvent(QTest::MouseMove, up.window, Qt::NoButton, {}, up.point);
    QTest::mouseRelease(up.window, Qt::LeftButton, {}, up.point);
  });
  QCursor::setPos(down.window->mapToGlobal(down.point));
  QTest::mousePress(down.window, Qt::LeftButton, {}, down.point);
  QTest::qWait(2 * kHeldMs);
}

void DesktopDriver::MoveMouse(HWND window, POINT point, unsigned keys) {
  const Spot spot = SpotOf(window, point);
  if (spot.window == nullptr) return;
  QTest::mouseEvent(QTest::MouseMove, spot.window, Qt::NoButton, ModifiersOf(keys), spot.point);
  ProcessEvents();
}

void DesktopDriver::Drag(HWND from, POINT start, HWND to, POINT end, unsigned keys) {
  const Spot first = SpotOf(from, start);
  const Spot last = SpotOf(to, end);
  if (first.window == nullptr || last.window != first.window) return;
  const Qt::KeyboardModifiers modifiers = ModifiersOf(keys);
  QTest::mousePress(first.window, Qt::LeftButton, modifiers, first.point);
  for (int step = 1; step <= 4; ++step) {
    QTest::mouseEvent(QTest::MouseMove, first.window, Qt::NoButton, modifiers,
                      first.point + (last.point - first.point) * step / 4);
    ProcessEvents();
  }
  QTest::mouseRelease(first.window, Qt::LeftButton, modifiers, last.point);
  ProcessEvents();
}

void DesktopDriver::Wheel(HWND window, POINT point, int steps) {
  const Spot spot = SpotOf(window, point);
  if (spot.window == nullptr) return;
  QWheelEvent event(spot.point, spot.window->mapToGlobal(spot.point), {}, QPoint(0, steps * kWheelStep),
                    Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(spot.window, &event);
  ProcessEvents();
}

void DesktopDriver::Press(HWND window, unsigned key, unsigned keys, bool alt) {
  QWidget* widget = WidgetFor(window);
  if (widget == nullptr) return;
  Activate(widget->window());
  QTest::keyClick(widget->window()->windowHandle(), KeyFor(key),
                  ModifiersOf(keys) | (alt ? Qt::AltModifier : Qt::NoModifier));
  ProcessEvents();
}

void DesktopDriver::Type(HWND window, const std::string& text) {
  QWidget* widget = WidgetFor(window);
  if (widget == nullptr) return;
  Activate(widget->window());
  for (const QChar character : TextFromCodePage(text.c_str())) {
    QTest::sendKeyEvent(QTest::Click, widget->window()->windowHandle(), Qt::Key_unknown, QString(character),
                        {});
  }
  ProcessEvents();
}

void DesktopDriver::PasteInto(HWND dialog, int id, const std::string& text) {
  QClipboard& clipboard = *QGuiApplication::clipboard();
  if (text.empty()) {
    clipboard.setMimeData(new QMimeData);  // the clipboard's
  } else {
    clipboard.setText(QString::fromStdString(text));
  }
  SetFocus(GetDlgItem(dialog, id));
  Press(dialog, 'V', MK_CONTROL);
  ProcessEvents();
}

void DesktopDriver::ClickControl(HWND dialog, int id) {
  QWidget* control = ControlOf(dialog, id);
  if (control == nullptr) return;
  const int x = qobject_cast<QPushButton*>(control) != nullptr ? control->width() / 2 : 8;
  const QPoint point = control->mapTo(control->window(), QPoint(x, control->height() / 2));
  QTest::mouseClick(control->window()->windowHandle(), Qt::LeftButton, {}, point);
  ProcessEvents();
}

void DesktopDriver::TypeInto(HWND dialog, int id, const std::string& text) {
  QWidget* control = ControlOf(dialog, id);
  if (control == nullptr) return;
  control->setFocus();
  if (auto* line = qobject_cast<QLineEdit*>(control)) line->selectAll();
  if (auto* edit = qobject_cast<QPlainTextEdit*>(control)) edit->selectAll();
  if (auto* combo = qobject_cast<QComboBox*>(control); combo != nullptr && combo->lineEdit() != nullptr) {
    combo->lineEdit()->selectAll();
  }
  Type(dialog, text);
}

void DesktopDriver::AnswerMessageBox(const std::string& textPart, int answer) {
  answers.push_back({Answer::kMessageBox, textPart, answer, {}});
}

void DesktopDriver::WhenDialogOpens(std::function<void(HWND dialog)> callback) {
  answers.push_back({Answer::kDialog, "a dialog", 0, std::move(callback)});
}

void DesktopDriver::ChooseFile(const std::string& path) {
  answers.push_back({Answer::kFile, path, 0, {}});
}

void DesktopDriver::ChooseMenuItem(const std::string& text) {
  answers.push_back({Answer::kMenu, text, 0, {}});
}

void DesktopDriver::Wait(int ms) {
  QTest::qWait(ms);
}

bool DesktopDriver::WaitUntil(const std::function<bool()>& predicate, int timeoutMs) {
  const bool held = QTest::qWaitFor(predicate, timeoutMs);
  EXPECT_TRUE(held) << "waited in vain";
  return held;
}

void DesktopDriver::ProcessEvents() {
  QApplication::processEvents();
  QApplication::sendPostedEvents();
}

int DesktopDriver::Paints() const {
  return watch->paints;
}

std::string DesktopDriver::ShownTip() {
  return QToolTip::isVisible() ? QToolTip::text().toStdString() : std::string();
}

COLORREF DesktopDriver::PixelAt(HWND window, POINT point) {
  QWidget* widget = WidgetFor(window);
  if (widget == nullptr) return kNoColour;
  const QColor colour = widget->grab().toImage().pixelColor(point.x, point.y);
  return RGB(colour.red(), colour.green(), colour.blue());
}
