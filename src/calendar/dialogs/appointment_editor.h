// The dialog in which one appointment is made or changed. It works on the caller's record and never touches
// the file: the caller adds or writes the record when the dialog ended with OK, and holds the edit lock
// around it.
#pragma once

#include "core/calendar/appointment.h"
#include "framework/dialog_items.h"
#include "pickers/date_button.h"
#include "pickers/time_button.h"

class AppointmentEditor : public ZarfDialog {
 public:
  enum class Mode { kEdit = 1, kNew = 2 };
  // The numbers of its controls.
  enum ControlId {
    kDateButton = 100,
    kTimeButton = 101,
    kSubjectEdit = 103,
    kCategoryBox = 104,
    kConfidentialBox = 105,
    kAlarmButton = 106,
    kNotesEdit = 107,
    kAttachButton = 110,
    kAllDayBox = 111,
    kRepeatButton = 112,
    kWithButton = 113,
  };

  // `record` is borrowed and receives the fields on OK. With kNew it is first made a new appointment on
  // `date` and in `newCategory` at this time of day; with kEdit neither is used. `file` is only read: for its
  // categories and the user's rights.
  AppointmentEditor(const core::RecordFile& file, core::Appointment& record, const core::Date& date,
                    Mode mode, std::string_view newCategory = {});

  // Runs the dialog over `owner`: 1 for OK, 0 for Cancel. After Cancel the record may be changed and is of no
  // use.
  int Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void MakeNew(const core::Date& date, std::string_view category);
  void ShowCategory();
  void ShowTimes();
  void OnDateButton();
  void OnTimeButton();
  void OnWith();
  void OnAllDay();
  void TellFirstOccurrence();
  void OnOk();

  const core::RecordFile& file;
  core::Appointment& appointment;
  const Mode mode;
  // As the editor opened.
  const core::RepeatRule ruleBefore;
  const core::Date dateBefore;
  const bool owner;  // whether the user may see and set "Confidential"

  DateButton dateButton{*this, kDateButton};
  TimeButton times{*this, kTimeButton};
  TextItem subject{*this, kSubjectEdit};
  ComboItem category{*this, kCategoryBox};
  CheckItem confidential{*this, kConfidentialBox};
  TextItem notes{*this, kNotesEdit};
  CheckItem allDay{*this, kAllDayBox};
};
