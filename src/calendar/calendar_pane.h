// The calendar program: its main frame with two panes, a title page and the calendar. It owns the open
// calendar file, which the calendar panel borrows.
#pragma once

#include <memory>
#include <string>

#include "calendar/work_pane.h"
#include "core/record_file.h"
#include "shell/intro_pane.h"
#include "shell/main_frame.h"

class CalendarPane : public ZarfWndApp {
 public:
  CalendarPane();
  // Notes down which pane was shown.
  ~CalendarPane() override;

  // Opens a calendar in place of the open one. On failure the open one stays. `message` (UTF-8), if not
  // empty, is for the user: it names the file and what is wrong, or what is to be known about it all the
  // same.
  bool OpenCalendar(const std::string& path, const std::string& password, bool withExamples,
                    std::string& message);

  CalendarPanel& Panel() { return work.Panel(); }
  // The open calendar; null when there is none.
  core::RecordFile* CalendarFile() { return calendarFile.get(); }

  LRESULT OnCreate(const MessageRecord& record) override;
  // Shows the pane that was shown last and opens the start-up calendar. The frame is on the screen by now, so
  // that a message has something to stand over.
  LRESULT OnAfterCreate(const MessageRecord& record) override;
  LRESULT OnActivate(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;
  LRESULT OnClose(const MessageRecord& record) override;
  LRESULT OnDestroy(const MessageRecord& record) override;
  void ShowHelp(int topic) override;

 private:
  // Gives the keyboard to what it is for in the current pane.
  void FocusPane();
  // Opens the start-up calendar or, where there is none, one that the user makes; without any the frame is
  // closed.
  void OpenAtStart();
  void RunFileCommand(unsigned command);
  void TakeFile(std::unique_ptr<core::RecordFile> file);

  std::unique_ptr<core::RecordFile> calendarFile;  // outlives the panel, which borrows it
  ZarfIntroPane intro;
  WorkPane work;
};
