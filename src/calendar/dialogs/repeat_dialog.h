// The dialog "Repeat": whether, how often and until when an appointment occurs again. It works on the
// appointment that its caller is about to store and lives on the stack for one Run.
#pragma once

#include "core/calendar/repeat_choice.h"
#include "framework/dialog_items.h"
#include "pickers/date_button.h"

class RepeatDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId {
    kNoneRadio = 100,
    kDailyRadio,
    kWeeklyRadio,
    kMonthlyRadio,
    kYearlyRadio,
    kEveryLabel = 202,
    kEveryBox,
    kUnitLabel,
    kEndLabel,
    kNoEndRadio,
    kEndRadio,
    kEndDateButton,
    kWeekdaysLabel,
    kFirstWeekdayBox,  // Sunday
    kLastWeekdayBox = kFirstWeekdayBox + 6,
  };

  // `record` is borrowed. Its date is only read; its rule is replaced on OK.
  explicit RepeatDialog(core::Appointment& record);

  // True for OK.
  bool Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void ShowWhatBelongsToType();
  void EnableEndDate();
  void PickEndDate();
  // A weekly rule needs a day: the last one checked stays so.
  void KeepOneWeekday(int clickedBox);
  std::uint32_t CheckedWeekdays() const;
  core::RepeatType ChosenType() const;
  void OnOk();

  core::Appointment& appointment;
  core::Date endDate;  // what the date button shows
  ComboItem everyBox{*this, kEveryBox};
  CheckItem hasEnd{*this, kEndRadio};
  DateButton endButton{*this, kEndDateButton};
};
