// The dialog "Alarm" of the editor: whether and when an appointment rings, with which tone, and what it
// starts then. It works on the appointment that its caller is about to store.
#pragma once

#include "core/calendar/appointment.h"
#include "framework/dialog_items.h"
#include "pickers/time_button.h"

class AlarmSettingsDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId {
    kDaysBox = 100,
    kTimeButton,
    kToneEdit = 103,
    kPlayButton,
    kBrowseToneButton,
    kStartEdit,
    kBrowseStartButton,
    kMailRadio = 110,
    kUrlRadio,
    kDocumentRadio,
    kSetRadio = 120,
    kCancelRadio,
    kRingLabel = 1000,
  };

  // `record` is borrowed. The time and the days before are stored as they are chosen, the rest on OK.
  // `isNew`: the appointment is in no file yet.
  AlarmSettingsDialog(core::Appointment& record, bool isNew);

  // True for OK.
  bool Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void ShowRingMoment();
  void EnableControls();
  void PickTime();
  void Play();
  bool OnOk();

  core::Appointment& appointment;
  ComboItem days{*this, kDaysBox};
  TimeButton time{*this, kTimeButton};
  TextItem tone{*this, kToneEdit};
  TextItem start{*this, kStartEdit};
  CheckItem set{*this, kSetRadio};
  TextItem ring{*this, kRingLabel};
};
