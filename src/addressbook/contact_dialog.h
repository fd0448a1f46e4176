// The dialog "Nameleaf record": the name and the e-mail address of one contact.
#pragma once

#include "core/contacts/contact.h"
#include "framework/dialog_items.h"

class ContactDialog : public ZarfDialog {
 public:
  enum ControlId { kNameEdit = 100, kEmailEdit };

  // `shownContact` is borrowed, and receives both texts on OK; either may be empty.
  explicit ContactDialog(core::Contact& shownContact) : contact(shownContact) {}

  // True for OK.
  [[nodiscard]] bool Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  core::Contact& contact;
  TextItem name{*this, kNameEdit};
  TextItem email{*this, kEmailEdit};
};
