// The dialog "Find": a text to look for in the subjects and notes of the open calendar, and what was found.
// An appointment can be edited in its list; "Go to" ends the dialog with it. It lives on the stack for one
// Run, inside the command that opened it: while it stands there alarms ring over it.
#pragma once

#include <optional>
#include <string>

#include "calendar/views/find_list.h"
#include "calendar/views/header_strip.h"
#include "calendar/window_host.h"
#include "controls/kept_selection.h"
#include "core/calendar/text_search.h"
#include "framework/dialog_items.h"

class FindDialog : public ZarfDialog, private core::SessionListener {
 public:
  // The numbers of its controls.
  enum ControlId {
    kFindButton = IDOK,
    kDoneButton = IDCANCEL,
    kResultList = 102,
    kTextEdit = 103,
    kGoToButton = 104,
    kResultArea = 107,
    kCategoryText = 200,
  };

  // Looks only among the appointments that the session's category filter shows. Both must outlive the dialog.
  FindDialog(core::CalendarSession& calendarSession, CommandGate& commandGate);
  ~FindDialog() override;

  // True for "Go to".
  bool Run(ZarfWnd* owner);
  // What was chosen then.
  const core::Appointment& Chosen() const { return chosen; }

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnAfterCreate(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void OnSessionChange(core::SessionChange change) override;
  void Find();
  // Fills the list with what `searched` finds in the file that is open now.
  void Search();
  void OnListNotice(unsigned code, LPARAM value);
  void Edit(int index);
  void GoTo();
  void ShowCount();
  void PlaceList();

  core::CalendarSession& session;
  CommandGate& gate;
  core::TextSearch results;
  std::optional<std::string> searched;
  core::Appointment chosen{};

  TextItem text{*this, kTextEdit};
  TextItem category{*this, kCategoryText};
  DialogItem goTo{*this, kGoToButton};
  HeaderStrip header{"Results"};
  FindList list{kResultList};
  bool editing = false;
  KeptSelection keptSelection;
  WindowHost host;
};
