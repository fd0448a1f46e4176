// Rings the alarms of the open calendar, one at each check. Of all copies on a file the one that gets the
// edit lock of an appointment rings it, and moves its alarm on or turns it off before it gives the lock back.
// A copy whose password allows no changes rings none: its file has others for that. One that may only read
// the file may be the only one, and rings what is due that day, remembering it by itself.
#pragma once

#include <functional>
#include <string>

#include "calendar/command_gate.h"
#include "core/calendar/alarm_schedule.h"
#include "core/calendar/calendar_session.h"
#include "core/store/edit_lock.h"

class ZarfWnd;

class AlarmCheck {
 public:
  // All must outlive it. The alarm stands over `frame`, the main window.
  AlarmCheck(core::CalendarSession& calendarSession, CommandGate& commandGate, ZarfWnd& mainFrame)
      : session(calendarSession), gate(commandGate), frame(mainFrame) {}

  // Shows the first alarm that is due, if any, and returns when the user has seen it. Does nothing while a
  // command runs, an alarm being one, and does not merely wait, while this program holds an edit lock, and
  // while a menu or a drag has the mouse.
  void Run();

 private:
  // kDone when the alarm was shown; kVanished when there is nothing to show any more.
  core::CommandResult RingIfDue(const core::RecordKey& key, const core::AlarmMoment& now);
  // Shows the alarm and does what the user wants then. `store` notes down that it rang, for good if it is
  // told so, and answers what the user is to know of that.
  void Ring(const core::Appointment& record, const std::function<std::string(bool disable)>& store);
  void RingUnwritten(const core::AlarmList& alarms, const core::AlarmMoment& now);
  // What the user is to know of it, if anything.
  std::string Store(core::EditLock& lock, bool disable);

  core::CalendarSession& session;
  CommandGate& gate;
  ZarfWnd& frame;
  core::RungAlarms rung;  // of files that may not be written
  // A file that does not answer is asked less and less often: each try may hold up the window.
  int checksToSkip = 0;
  int nextSkip = 1;
};
