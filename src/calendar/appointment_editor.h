// The dialog in which one appointment is made or changed. It works on the caller's record and never touches
// the file: the caller adds or writes the record when the dialog ended with OK, and holds the edit lock
// around it.
#pragma once

#include "core/appointment.h"
#include "framework/zarf_dialog.h"

class AppointmentEditor : public ZarfDialog {
 public:
  enum class Mode { kEdit = 1, kNew = 2 };

  // `record` is borrowed and receives the fields on OK. With kNew it is first made a new appointment on
  // `date` at this time of day; with kEdit `date` is not used. `file` is only read: for its categories and
  // the user's rights.
  AppointmentEditor(const core::RecordFile& file, core::Appointment& record, const core::Date& date,
                    Mode mode);

  // Runs the dialog over `owner`: 1 for OK, 0 for Cancel. After Cancel the record may be changed and is of no
  // use.
  int Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void MakeNew(const core::Date& date);
  void FillCategories();
  void ShowCategory();
  void ShowDate();
  void ShowTimes();
  void EnableOk();
  void OnDateButton();
  void OnOk();
  void ResetAlarm();

  const core::RecordFile& file;
  core::Appointment& appointment;
  const bool owner;  // whether the user may see and set "Confidential"
};
