// The timers of one window: the program's numbers beside Qt's.
#pragma once

#include <QHash>
#include <QObject>
#include <optional>

#include "platform/desktop/types.h"

class TimerSet {
 public:
  explicit TimerSet(QObject& windowOwner) : owner(windowOwner) {}

  void Start(UINT id, int ms) {
    Stop(id);
    timers.insert(id, owner.startTimer(ms, ms <= kPreciseTimerMs ? Qt::PreciseTimer : Qt::CoarseTimer));
  }

  bool Stop(UINT id) {
    const auto found = timers.constFind(id);
    if (found == timers.constEnd()) return false;
    owner.killTimer(found.value());
    timers.erase(found);
    return true;
  }

  void StopAll() {
    for (const int timer : std::as_const(timers)) owner.killTimer(timer);
    timers.clear();
  }

  // The program's number of a Qt timer.
  std::optional<UINT> NumberOf(int qtTimer) const {
    for (auto timer = timers.constBegin(); timer != timers.constEnd(); ++timer) {
      if (timer.value() == qtTimer) return timer.key();
    }
    return std::nullopt;
  }

 private:
  // Timers up to this period are kept to the millisecond; longer ones may be bundled to save wake-ups.
  static constexpr int kPreciseTimerMs = 100;

  QObject& owner;
  QHash<UINT, int> timers;
};
