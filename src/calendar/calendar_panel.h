// The controller of the calendar: it shows the appointments of one day of the open file, with a mini calendar
// to choose the day and a selector to choose a category, and carries out the commands that change
// appointments. Every change goes through the record's edit lock and is followed by a refresh of the list and
// a short sound.
#pragma once

#include <cstdint>
#include <string>

#include "calendar/appointment_editor.h"
#include "calendar/category_selector.h"
#include "calendar/day_list.h"
#include "core/appointment_commands.h"
#include "core/record_query.h"
#include "pickers/mini_calendar.h"

class CalendarPanel : public ZarfWnd {
 public:
  CalendarPanel();

  // Shows a file, which stays the caller's and must stay open until another one, or null, is attached. With
  // the first one the current date becomes today. Without a file the list is empty and New beeps.
  void Attach(core::RecordFile* file);
  // Shows the current date and category anew.
  void Reload();

  const core::Date& CurrentDate() const { return currentDate; }
  // Empty for all categories.
  const std::string& CategoryFilter() const { return categorySelector.Filter(); }
  // The shown appointments, in the order of their rows.
  const core::RecordQuery& Records() const { return records; }
  void FocusList() { dayList.FocusList(); }
  // Brackets a command: one runs at a time, and the frame stays open until it has come to its end. False when
  // one runs already, and this one is to be dropped. The end gives the list the keyboard.
  bool BeginCommand();
  void EndCommand();
  // Whether the frame may close. While a command runs it may not; its end then posts the frame WM_CLOSE
  // again.
  bool MayClose();

  DayList& List() { return dayList; }
  MiniCalendar& Calendar() { return miniCalendar; }
  CategorySelector& Categories() { return categorySelector; }

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void RunCommand(unsigned command);
  void NewAppointment();
  void EditAppointment();
  void DeleteAppointment();
  void DropAppointment(bool copy, const core::Date& date);
  bool StoreEdited(core::EditLock& lock, core::Appointment& record);

  void OnListNotice(unsigned code, LPARAM value);
  void OnListChanged(LPARAM phase);
  void OnCalendarNotice(unsigned code, const core::Date& date);
  void OnCategoryCommand(int command, const char* name);
  void ShowPopupMenu(bool onItem);
  POINT MenuPoint() const;

  void SetCurrentDate(const core::Date& date);
  void LoadDay();
  void RefreshList() { dayList.RefreshFromFile(ListRefresh::kByProgram); }
  std::int32_t SelectedOffset() const { return dayList.RecordOffset(dayList.SelectedItem()); }
  // Tells the user what came of a command; a silent result is silent.
  void Report(core::CommandResult result);

  core::RecordFile* calendarFile = nullptr;  // borrowed
  bool wasAttached = false;
  bool commandRunning = false;
  bool closeWanted = false;
  core::Date currentDate;
  core::RecordQuery records;
  core::RecordHeader keptSelection;  // of the list while it is rebuilt
  bool hasKeptSelection = false;

  DayList dayList;
  CategorySelector categorySelector;
  MiniCalendar miniCalendar;
};
