#include "platform/desktop/application.h"

#include <fontconfig/fontconfig.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QSocketNotifier>
#include <QTimer>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include "platform/desktop/font.h"
#include "platform/desktop/qt/accessible_window.h"
#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/keyboard.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/desktop/window.h"

namespace {

// Shows key messages to the program before their window gets them.
class KeyFilter : public QObject {
 public:
  explicit KeyFilter(const MessageFilter& programFilter) : filter(programFilter) {}

 protected:
  bool eventFilter(QObject* receiver, QEvent* event) override {
    if (event->type() != QEvent::KeyPress || !receiver->isWidgetType()) return false;
    if (QApplication::activeModalWidget() != nullptr || QApplication::activePopupWidget() != nullptr)
      return false;
    const auto& key = *static_cast<QKeyEvent*>(event);
    const unsigned number = KeyOf(key);
    if (number == 0) return false;
    return filter({HandleAround(static_cast<QWidget*>(receiver)), KeyDownMessage(key), number, 0});
  }

 private:
  const MessageFilter& filter;
};

struct Desktop {
  std::unique_ptr<QApplication> application;
  std::vector<std::unique_ptr<QSocketNotifier>> notifiers;
  bool running = false;
  bool endsBySignal = false;
  bool quitPosted = false;
  int exitCode = 0;
};

Desktop& TheDesktop() {
  static Desktop desktop;
  return desktop;
}

int signalSockets[2] = {-1, -1};

void OnSignal(int) {
  const char byte = 1;
  [[maybe_unused]] const auto written = write(signalSockets[0], &byte, 1);
}

// Closes what lies over the main window, innermost first, then the window, as a user would.
void CloseAll(HWND mainWindow) {
  QWidget* over = QApplication::activePopupWidget();
  if (over == nullptr) over = QApplication::activeModalWidget();
  if (over == nullptr) {
    PostMessage(mainWindow, WM_CLOSE, 0, 0);
    return;
  }
  over->close();
  QTimer::singleShot(0, QApplication::instance(), [mainWindow] { CloseAll(mainWindow); });
}

void WatchSignals(HWND mainWindow) {
  if (signalSockets[0] != -1 ||
      socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0, signalSockets) != 0) {
    return;
  }
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigaction(number, &action, nullptr);
  }
  WatchDescriptor(signalSockets[1], [mainWindow] {
    char bytes[16];
    while (read(signalSockets[1], bytes, sizeof bytes) > 0) {
    }
    TheDesktop().endsBySignal = true;
    CloseAll(mainWindow);
  });
}

bool HasDisplay() {
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && *value != '\0') return true;
  }
  return false;
}

}  // namespace

bool StartDesktop(int& argc, char** argv) {
  if (!HasDisplay()) {
    std::fputs("tempoline: no display: neither DISPLAY nor WAYLAND_DISPLAY is set\n", stderr);
    return false;
  }
  QCoreApplication::setApplicationName(QStringLiteral("tempoline"));
  QCoreApplication::setApplicationVersion(QStringLiteral(DAYBRIX_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("tempoline"));
  Desktop& desktop = TheDesktop();
  // Reading the font configuration takes a third of the start; the other core does it while Qt finds the
  // display.
  std::thread fontReader([] { FcInit(); });
  desktop.application = std::make_unique<QApplication>(argc, argv);
  fontReader.join();
  BeginReadingFonts();
  QApplication::setQuitOnLastWindowClosed(false);
  QAccessible::installFactory(MakeAccessible);
  return true;
}

void StopDesktop() {
  Desktop& desktop = TheDesktop();
  EndReadingFonts();
  desktop.notifiers.clear();
  for (const HWND window : AllWindows()) DestroyWindow(window);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  desktop.application.reset();
}

int RunMessageLoop(HWND mainWindow, const MessageFilter& filter) {
  Desktop& desktop = TheDesktop();
  WatchSignals(mainWindow);
  KeyFilter keyFilter(filter);
  desktop.application->installEventFilter(&keyFilter);
  if (!desktop.quitPosted) {
    desktop.running = true;
    QApplication::exec();
    desktop.running = false;
  }
  desktop.quitPosted = false;
  desktop.endsBySignal = false;
  return desktop.exitCode;
}

void PostQuitMessage(int exitCode) {
  Desktop& desktop = TheDesktop();
  desktop.exitCode = exitCode;
  desktop.quitPosted = true;
  if (desktop.running) QCoreApplication::exit(exitCode);
}

bool EndsBySignal() {
  return TheDesktop().endsBySignal;
}

void RunWaitingMessages() {
  QCoreApplication::processEvents();
}

void WatchDescriptor(int descriptor, std::function<void()> ready) {
  auto notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, [ready = std::move(ready)] { ready(); });
  TheDesktop().notifiers.push_back(std::move(notifier));
}

void MessageBeep() {
  QApplication::beep();
}
