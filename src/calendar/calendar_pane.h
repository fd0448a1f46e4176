// The calendar program: its main frame with two panes, a title page and the calendar. It owns the calendar
// session, opens the calendar of the start, and hands commands to whoever carries them out, one at a time.
#pragma once

#include "calendar/alarm_check.h"
#include "calendar/work_pane.h"
#include "core/calendar/calendar_session.h"
#include "exchange/range_dialog.h"
#include "shell/intro_pane.h"
#include "shell/main_frame.h"

class CalendarPane : public ZarfWndApp, private core::SessionListener {
 public:
  CalendarPane();
  ~CalendarPane() override;

  core::CalendarSession& Session() { return session; }
  CalendarPanel& Panel() { return work.Panel(); }

  LRESULT OnCreate(const MessageRecord& record) override;
  // Shows the pane that was shown last and opens the start-up calendar. The frame is on the screen by now, so
  // that a message has something to stand over.
  LRESULT OnAfterCreate(const MessageRecord& record) override;
  LRESULT OnActivate(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  LRESULT OnClose(const MessageRecord& record) override;
  LRESULT OnDestroy(const MessageRecord& record) override;
  void ShowHelp(int topic) override;

 private:
  void OnSessionChange(core::SessionChange change) override;
  // Gives the keyboard to what it is for in the current pane.
  void FocusPane();
  // Opens the start-up calendar or, where there is none, one that the user makes; without any the frame is
  // closed.
  void OpenAtStart();
  void RunFileCommand(unsigned command);
  void ShowAddressBook();
  void Report();
  void LookAfterFile();

  core::CalendarSession session;  // the panel, which borrows both, ends first
  CommandGate gate;
  ExchangeChoices exchangeChoices;
  ZarfIntroPane intro;
  WorkPane work;
  AlarmCheck alarms;
};
