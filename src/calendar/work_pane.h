// The pane of the calendar: all of it is the calendar panel.
#pragma once

#include "calendar/calendar_panel.h"
#include "framework/pane.h"

class WorkPane : public ZarfPane {
 public:
  WorkPane(const char* newName, const PaneColours& newColours, core::CalendarSession& session,
           CommandGate& gate)
      : ZarfPane(newName, newColours), panel(session, gate) {}

  CalendarPanel& Panel() { return panel; }

  LRESULT OnCreate(const MessageRecord&) override { return panel.Create(this) ? 0 : -1; }
  LRESULT OnSize(const MessageRecord& record) override {
    const POINT size = PointFromLParam(record.lParam);
    panel.Move(0, 0, size.x, size.y, 1);
    return 0;
  }
  bool OnEnter() override {
    panel.FocusList();
    return true;
  }

 private:
  CalendarPanel panel;
};
