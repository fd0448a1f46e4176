// The one timer of the process by which core::FileWatch looks at shared files. It runs, on a hidden window of
// its own, while anybody holds it.
#pragma once

class WatchTimerHold {
 public:
  WatchTimerHold() = default;
  ~WatchTimerHold();
  WatchTimerHold(const WatchTimerHold&) = delete;
  WatchTimerHold& operator=(const WatchTimerHold&) = delete;

  // Holds the timer from now until this object ends. There must be a desktop.
  void Start();

 private:
  bool started = false;
};

// Gives a running timer the period that the settings now name.
void RearmWatchTimer();
