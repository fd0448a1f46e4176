// The windows that show many days at once, each with its appointments: MonthView and WeekView say what they
// look like and how far a step goes, all else is here.
//
// A grid shows the session's file and category around a day of its own, the view date, which begins as the
// session's and which steps, keys and clicks move. A day that is clicked, or opened by Enter or Space, is
// told to the parent by WM_COMMAND, posted, with the grid's id in the low word, 0 in the high word and the
// date as a word (framework/date_word.h). kGridListed in the high word says that the days were listed anew
// because others changed the file: IsWhole may answer something else.
//
// What it shows is read when it is shown, stepped or sized, and when the file has changed: by others, while
// it is on the screen, as the file watch finds out.
#pragma once

#include <memory>
#include <string>

#include "calendar/views/day_cells.h"
#include "calendar/views/day_grid_painting.h"
#include "controls/spin_button.h"
#include "controls/watch_timer.h"
#include "core/calendar/calendar_session.h"
#include "core/store/file_watch.h"
#include "framework/owner_drawn.h"

constexpr unsigned kGridListed = 1;

class DayGrid : public OwnerDrawn, private core::FileWatcher {
 public:
  ~DayGrid() override;

  // Shows what the session has: to be called before the grid is shown, and when file or rights have changed.
  void ShowSession();
  // Reads anew what the file holds, around the same view date.
  void Relist();
  // Shows nothing of any file.
  void Clear();

  const core::Date& ViewDate() const { return viewDate; }
  // False when appointments may be missing.
  bool IsWhole() const { return cells.IsWhole(); }

  void Paint(HDC hdc, const RECT& client) const override;
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override;

  int PrepareClass(WNDCLASS* windowClass) override;
  int PreCreate(char title[kTitleSize], DWORD* style, int placement[4]) override;
  LRESULT WindowProc(const MessageRecord& record) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnEraseBkgnd(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnMouseMove(const MessageRecord& record) override;
  LRESULT OnMouseWheel(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  // Arrows move to another day, Page Up and Page Down step, Home goes to today, Enter and Space open the day.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  bool KeepsKey(unsigned key) const override;
  // From the buttons.
  LRESULT OnCommand(const MessageRecord& record) override;

  void Describe(int item, AccessiblePart* part) override;
  int ItemAt(POINT point) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  // `name` is what a step goes by: "month". The strings must outlive the grid, the session as well.
  DayGrid(int newCommandId, core::CalendarSession& calendarSession, GridShape newShape,
          const GridLook& newLook, const char* newWindowClass, const char* name);

  // Moves a date by one step; false, the date untouched, when that would leave the calendar.
  virtual bool Step(core::Date& date, bool forward) const = 0;
  // What the grid is called for those who do not see it.
  virtual std::string Name() const = 0;
  const GridDays& Days() const { return days; }

  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  const char* CursorAt(POINT point) override;

 private:
  const core::RecordFile* WatchedFile() const override;
  void OnLook(const core::FileLook& look) override;

  core::Date DateOf(int day) const;
  int DayAt(POINT point) const;
  RECT CellOf(int day) const { return GridCell(shape, ClientArea(), days, day); }
  void ShowListed();
  bool Refresh();
  void ReadLines();
  void GoTo(const core::Date& date);
  void StepOrBeep(bool forward);
  void OpenDay(const core::Date& date);
  bool OnArrow(unsigned key);
  void SetTipDay(int day);
  std::string TipOf(int day);

  const int commandId;
  core::CalendarSession& session;
  const GridShape shape;
  const GridLook look;
  const char* const windowClassName;
  const std::string stepName;

  core::Date viewDate;
  core::Date today;  // when the file was last looked at
  GridDays days;
  DayCells cells;
  bool keysUsed = false;  // since the window has the keyboard: shows which day they work on
  int tipDay = -1;        // that the mouse is over, and that has more to tell than there is room for

  ZarfSpinButton previousButton;
  ZarfSpinButton todayButton;
  ZarfSpinButton nextButton;
  WatchTimerHold timer;
};
