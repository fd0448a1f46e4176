// What the user starts in the calendar panel, by keys, menus, the bin or a drop: each command runs in a
// CommandScope of its own, on the appointment selected in the day list, with the panel as its host. While
// another one runs it is dropped.
#pragma once

#include "calendar/command_gate.h"
#include "calendar/view_switch.h"
#include "calendar/views/day_list.h"
#include "calendar/window_host.h"
#include "core/calendar/calendar_session.h"

class PanelCommands {
 public:
  // All must outlive it; their windows may be made later.
  PanelCommands(ZarfWnd& calendarPanel, core::CalendarSession& calendarSession, CommandGate& commandGate,
                DayList& list, const ViewSwitch& viewSwitch)
      : panel(calendarPanel),
        session(calendarSession),
        gate(commandGate),
        dayList(list),
        views(viewSwitch),
        host(calendarPanel, list, calendarSession, commandGate) {}

  // False when the number, one of shell/commands.h, is none of a command on appointments.
  bool Run(unsigned command);
  // For the recycle bin: 1 when the command was carried out.
  LRESULT RunForBin(unsigned command);
  // Gives the selected appointment, or a copy of it, another day.
  void Drop(bool copy, const core::Date& date);
  // The popup menu, whose command is posted to the panel. `onRecord`: it was asked for on an appointment.
  void ShowMenu(bool onRecord) const;

 private:
  void RunInScope(unsigned command);
  void Find();
  POINT MenuPoint() const;
  core::RecordKey SelectedKey() const { return dayList.KeyAt(dayList.SelectedItem()); }

  ZarfWnd& panel;
  core::CalendarSession& session;
  CommandGate& gate;
  DayList& dayList;
  const ViewSwitch& views;
  WindowHost host;
};
