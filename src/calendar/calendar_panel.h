// The calendar: the appointments of the session's day, a mini calendar to choose the day and a selector to
// choose a category, or in place of them a week or a month. It turns what its children and the menus tell
// into changes of the session and commands, and shows what the session tells.
#pragma once

#include "calendar/command_gate.h"
#include "calendar/panel_commands.h"
#include "calendar/view_switch.h"
#include "calendar/views/category_selector.h"
#include "calendar/views/day_list.h"
#include "calendar/views/notice_line.h"
#include "calendar/views/recycle_bin.h"
#include "controls/kept_selection.h"
#include "core/calendar/calendar_session.h"
#include "core/calendar/day_lists.h"
#include "pickers/mini_calendar.h"

class CalendarPanel : public ZarfWnd, private core::SessionListener {
 public:
  // Both must outlive the panel.
  CalendarPanel(core::CalendarSession& calendarSession, CommandGate& commandGate);
  ~CalendarPanel() override;

  // Gives the keyboard to the list, or to the week or the month while that shows.
  void FocusList();

  DayList& List() { return dayList; }
  MiniCalendar& Calendar() { return miniCalendar; }
  CategorySelector& Categories() { return categorySelector; }
  RecycleBinWnd& Bin() { return recycleBin; }
  ViewSwitch& Views() { return views; }

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void OnSessionChange(core::SessionChange change) override;

  void OnListNotice(unsigned code, LPARAM value);
  void OnListChanged(LPARAM rebuild);
  void OnCalendarNotice(unsigned code, core::Date date);
  void OnGridNotice(unsigned code, core::Date date);
  void ShowView(CalendarView view);
  void OnCategoryCommand(int command, const char* name);
  void LoadDay();
  PanelLayout Layout() const;
  void PlaceParts();
  void ShowWhetherWhole();

  core::CalendarSession& session;
  CommandGate& gate;
  core::DayLists records;  // of the session's day
  KeptSelection keptSelection;

  DayList dayList;
  CategorySelector categorySelector;
  MiniCalendar miniCalendar;
  RecycleBinWnd recycleBin;
  NoticeLine notice;
  ViewSwitch views;
  PanelCommands commands;
};
