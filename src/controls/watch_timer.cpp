#include "controls/watch_timer.h"

#include <utility>

#include "core/ini_file.h"
#include "core/store/file_watch.h"
#include "framework/zarf_wnd.h"

namespace {

constexpr UINT kWatchTimer = 100;

class WatchWindow : public ZarfWnd {
 public:
  LRESULT OnTimer(const MessageRecord&) override {
    core::FileWatch::OfProcess().Look();
    return 0;
  }
};

int holds = 0;

// The object stays when its window goes: the last hold may end inside a look.
WatchWindow& Window() {
  static WatchWindow window;
  return window;
}

}  // namespace

void WatchTimerHold::Start() {
  if (std::exchange(started, true)) return;
  ++holds;
  if (!IsWindow(Window().Handle())) Window().Create(nullptr, WS_POPUP);
  RearmWatchTimer();
}

WatchTimerHold::~WatchTimerHold() {
  if (started && --holds == 0) DestroyWindow(Window().Handle());
}

void RearmWatchTimer() {
  if (holds != 0) SetTimer(Window().Handle(), kWatchTimer, core::NetworkRefreshSeconds() * 1000);
}
