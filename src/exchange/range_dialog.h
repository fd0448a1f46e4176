// What the dialogs "Export" and "Print Report" have in common: which appointments go out. All of them or
// those of a range of dates, and of these perhaps only those with a text in their subject.
#pragma once

#include <optional>
#include <string>

#include "core/exchange/appointment_writer.h"
#include "framework/dialog_items.h"
#include "pickers/date_button.h"

// What was chosen last, for as long as the program runs. Export and report share it.
struct ExchangeChoices {
  std::optional<core::DateRange> dates;  // none before the first dialog
  std::string subject;
};

class RangeDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId {
    kAllRadio = 100,
    kDatesRadio,
    kRecordRadio,  // of the report
    kSubjectBox = 200,
    kSubjectEdit,
    kFromButton = 300,
    kToButton,
  };

  LRESULT OnCommand(const MessageRecord& record) override;

 protected:
  // Begins with the dates of `kept`, which must outlive the dialog, or else with `today` twice.
  RangeDialog(ExchangeChoices& kept, const core::Date& today);

  // For OnInitDialog: shows the choices, with one of the radio buttons checked.
  void ShowChoices(ControlId checked);
  // The choices as they are now, with kAll for what is neither a range nor all. Keeps them.
  core::ExchangeOptions TakeChoices();

 private:
  void EnableDates();
  void EnableSubject();
  void PickDate(const DateButton& button, core::Date core::DateRange::*date);

  ExchangeChoices& choices;
  core::DateRange range;
  CheckItem datesRadio{*this, kDatesRadio};
  DateButton from{*this, kFromButton};
  DateButton to{*this, kToButton};
  CheckItem bySubject{*this, kSubjectBox};
  TextItem subject{*this, kSubjectEdit};
};
