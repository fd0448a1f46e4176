#include "platform/desktop/qt/dialog_owner.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QThread>
#include <QWidget>
#include <QWindow>

#include "platform/desktop/qt/window_table.h"

namespace {

constexpr int kPlacedMs = 1000;
constexpr unsigned long kLookMs = 5;

}  // namespace

QWidget* ReadyOwner(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr) return nullptr;
  QWidget* top = entry->Outer()->window();
  const QWindow* handle = top->windowHandle();
  if (handle == nullptr || !top->isVisible() || top->isMinimized()) return top;
  QElapsedTimer waited;
  waited.start();
  while (!handle->isExposed() && waited.elapsed() < kPlacedMs) {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    QThread::msleep(kLookMs);
    if (FindWindowEntry(window) == nullptr) return nullptr;
  }
  return top;
}

void ReturnToOwner(HWND window) {
  const WindowEntry* entry = FindWindowEntry(window);
  if (entry == nullptr || !entry->widget->isVisible()) return;
  // Another dialog may stand over the owner and keep it from input.
  QWidget* dialog = QApplication::activeModalWidget();
  (dialog != nullptr ? dialog : entry->widget->window())->activateWindow();
}

void TrimDialogFrame(QWidget& dialog) {
  dialog.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                        Qt::WindowCloseButtonHint);
}
