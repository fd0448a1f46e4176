// The dialog "Attach": the document or address that belongs to an appointment. It works on the appointment
// that its caller is about to store.
#pragma once

#include "core/calendar/appointment.h"
#include "framework/dialog_items.h"

class AttachDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId {
    kDocumentRadio = 100,
    kUrlRadio,
    kPathEdit,
    kBrowseButton,
    kOpenButton,
  };

  // `record` is borrowed; its attachment is replaced on OK.
  explicit AttachDialog(core::Appointment& record) : appointment(record) {}

  // True for OK.
  bool Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void OnOpen();
  void OnOk();

  core::Appointment& appointment;
  CheckItem document{*this, kDocumentRadio};
  CheckItem url{*this, kUrlRadio};
  TextItem path{*this, kPathEdit};
};
