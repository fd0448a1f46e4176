#include "exchange/range_dialog.h"

#include "framework/notices.h"
#include "resources/text_ids.h"

RangeDialog::RangeDialog(ExchangeChoices& kept, const core::Date& today)
    : choices(kept), range(kept.dates.value_or(core::DateRange{today, today})) {}

void RangeDialog::ShowChoices(ControlId checked) {
  CheckDlgButton(hwnd, checked, true);
  from.Show(range.from);
  to.Show(range.to);
  EnableDates();
  subject.LimitTo(core::kMostExchangeSubject + 1);
  subject.SetText(choices.subject);
  subject.Enable(false);
}

core::ExchangeOptions RangeDialog::TakeChoices() {
  core::ExchangeOptions options;
  options.range = datesRadio.Checked() ? core::ExchangeRange::kDates : core::ExchangeRange::kAll;
  options.dates = range;
  options.most = core::kNoMost;
  choices.dates = range;
  if (bySubject.Checked()) {
    choices.subject = subject.Text(core::kMostExchangeSubject);
    options.subject = choices.subject;
  }
  return options;
}

LRESULT RangeDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kAllRadio:
    case kDatesRadio:
    case kRecordRadio:
      EnableDates();
      return 1;
    case kSubjectBox:
      EnableSubject();
      return 1;
    case kFromButton:
      PickDate(from, &core::DateRange::from);
      return 1;
    case kToButton:
      PickDate(to, &core::DateRange::to);
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

void RangeDialog::EnableDates() {
  from.Enable(datesRadio.Checked());
  to.Enable(datesRadio.Checked());
}

void RangeDialog::EnableSubject() {
  subject.Enable(bySubject.Checked());
  if (bySubject.Checked()) subject.Focus();
}

void RangeDialog::PickDate(const DateButton& button, core::Date core::DateRange::*date) {
  const auto picked = button.Pick(range.*date);
  if (!picked) return;
  core::DateRange changed = range;
  changed.*date = *picked;
  if (core::StoredDayIndex(changed.to) < core::StoredDayIndex(changed.from)) {
    ShowInfoId(this, text::kFromAfterTo);
    return;
  }
  range = changed;
  button.Show(*picked);
}
