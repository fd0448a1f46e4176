// The dialog "Import iCalendar": what reading the file would come to, counted, and each thing by itself in a
// list. It lives on the stack for one Run and changes nothing itself.
#pragma once

#include "core/exchange/ical_update.h"
#include "framework/dialog_items.h"

class IcalPlanDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId { kImportButton = IDOK, kCountsText = 100, kList = 102 };

  // Shows the update, which must outlive the dialog. One that changes nothing can only be cancelled.
  explicit IcalPlanDialog(const core::IcalUpdate& shownUpdate) : update(shownUpdate) {}

  // True for "Import".
  bool Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;

 private:
  void FillList();

  const core::IcalUpdate& update;
  TextItem counts{*this, kCountsText};
  DialogItem importButton{*this, kImportButton};
  ListItem list{*this, kList};
};
