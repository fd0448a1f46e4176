// The dialog "Alarm" that rings: it shows an appointment, plays its tone, and offers to start what the alarm
// is to start. It changes nothing: its caller writes what came of it.
#pragma once

#include <string>

#include "core/calendar/appointment.h"
#include "framework/dialog_items.h"

class AlarmDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId {
    kDateText = 100,
    kTimeText,
    kSubjectEdit = 103,
    kStartText,
    kStartBox,
    kDisableBox,
  };

  explicit AlarmDialog(const core::Appointment& record) : appointment(record) {}

  // Rings over `owner`, until the user has seen it: true. False when the end of the session took it away.
  [[nodiscard]] bool Run(ZarfWnd* owner);
  // What the user wants then; nothing of it after Cancel.
  bool WantsStart() const { return wantsStart; }
  bool WantsNoMore() const { return wantsNoMore; }
  // Why the tone was not heard; empty when it was, or the alarm has none.
  const std::string& ToneFault() const { return toneFault; }

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void PlayTone();

  const core::Appointment appointment;
  bool wantsStart = false;
  bool wantsNoMore = false;
  std::string toneFault;
  TextItem date{*this, kDateText};
  TextItem time{*this, kTimeText};
  TextItem subject{*this, kSubjectEdit};
  TextItem target{*this, kStartText};
  CheckItem start{*this, kStartBox};
  CheckItem disable{*this, kDisableBox};
};

// Starts what the alarm of a record starts; where nothing opens it, that is told over `owner`.
void StartTarget(ZarfWnd* owner, const core::Appointment& record);
