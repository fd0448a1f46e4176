#include "addressbook/contact_chooser.h"

#include "addressbook/contacts_dialog.h"
#include "core/store/file_messages.h"
#include "framework/notices.h"
#include "platform/desktop/application.h"

namespace {

constexpr int kTemplate = 1015;

class ContactChooser : public ContactsDialog {
 public:
  ContactChooser() : ContactsDialog("E-Record") {}

  bool Run(ZarfWnd* owner) { return Open(owner, kTemplate) == 1; }
  const core::Contact& Chosen() const { return chosen; }

  LRESULT OnCommand(const MessageRecord& record) override {
    if (LowWord(record.wParam) == IDOK && !TakeSelected()) return 1;
    return ContactsDialog::OnCommand(record);
  }

 private:
  void OnListNotice(unsigned code, LPARAM value) override {
    // Posted: the rows may be others by now.
    if (code == kListDoubleClick && value >= 0 && value == list.SelectedItem()) Post(WM_COMMAND, IDOK, 0);
  }

  bool TakeSelected() {
    const core::RecordKey key = list.KeyAt(list.SelectedItem());
    core::RecordFile* const file = key.IsNone() ? nullptr : OpenBook();
    if (file == nullptr) {
      MessageBeep();
    } else if (file->ReadRecord(&chosen, key)) {
      return true;
    } else {
      ShowInfo(this, core::DescribeFault(file->Path(), file->LastFault()));
      Reload(0);
    }
    list.FocusList();
    return false;
  }

  core::Contact chosen{};
};

}  // namespace

bool ChooseContact(ZarfWnd* owner, std::string& name, std::string& email) {
  ContactChooser chooser;
  if (!chooser.Run(owner)) return false;
  name = core::ReadText(chooser.Chosen().name);
  email = core::ReadText(chooser.Chosen().email);
  return true;
}
