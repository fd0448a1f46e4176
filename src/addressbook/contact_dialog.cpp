#include "addressbook/contact_dialog.h"

namespace {

constexpr int kTemplate = 1013;

}  // namespace

bool ContactDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT ContactDialog::OnInitDialog(const MessageRecord&) {
  name.ShowField(contact.name);
  email.ShowField(contact.email);
  name.Focus();
  return 0;
}

LRESULT ContactDialog::OnCommand(const MessageRecord& record) {
  if (LowWord(record.wParam) == IDOK) {
    name.TakeField(contact.name);
    email.TakeField(contact.email);
  }
  return ZarfDialog::OnCommand(record);
}
