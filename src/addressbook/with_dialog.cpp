#include "addressbook/with_dialog.h"

#include <algorithm>

#include "core/contacts/external_contacts.h"
#include "framework/notices.h"
#include "framework/password_dialog.h"
#include "framework/services.h"
#include "framework/shell_services.h"
#include "resources/text_ids.h"

namespace {

constexpr int kTemplate = 2015;
constexpr std::size_t kMostTyped = 255;
constexpr std::size_t kMostDescription = 5023;

constexpr const char* kFilter = "Nameleaf file (*.adr)|*.adr||";
constexpr const char* kExtension = "adr";

core::ExternalContacts ReadContacts(ZarfWnd* owner, const std::string& path) {
  core::ExternalContacts read = core::ReadExternalContacts(path, "");
  std::string password;
  if (read.result == core::ExternalContacts::kWrongPassword && AskOver(owner)(path, password)) {
    read = core::ReadExternalContacts(path, password);
  }
  return read;
}

}  // namespace

bool WithDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT WithDialog::OnInitDialog(const MessageRecord&) {
  text.LimitTo(kMostTyped);
  ShowProposals();
  shownPath.SetPath(core::ExternalContactsPath());
  text.Focus();
  return 0;
}

// The dialog is on the screen by now, for what there is to ask and to tell.
LRESULT WithDialog::OnAfterCreate(const MessageRecord&) {
  Load(shownPath.Path());
  return 0;
}

bool WithDialog::Load(const std::string& path) {
  const core::ExternalContacts read = ReadContacts(this, path);
  if (read.result == core::ExternalContacts::kCannotOpen) {
    ShowInfo(this, core::CannotOpenContactsText(path));
    return false;
  }
  if (read.result == core::ExternalContacts::kWrongPassword) {
    ShowInfoId(this, text::kWrongPassword);
    return false;
  }
  BeginWaitCursor();
  contacts.Clear();
  for (const std::string& name : read.names) contacts.Add(name);
  contacts.Select(read.names.empty() ? -1 : 0);
  ShowProposals();
  EndWaitCursor();
  if (!read.whole) ShowInfo(this, "Not all contacts of this file could be read.\r\n" + path);
  return true;
}

void WithDialog::ShowProposals() {
  const int line = std::max(text.Selected(), 0);
  const int contact = contacts.Selected();
  text.Clear();
  for (const std::string& proposal :
       core::DescriptionProposals(contact >= 0 ? contacts.Line(contact) : std::string())) {
    text.Add(proposal);
  }
  text.Select(line);
}

LRESULT WithDialog::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  const unsigned code = HighWord(record.wParam);
  if (id == kContactList && code == LBN_SELCHANGE) {
    ShowProposals();
    return 1;
  }
  if (id == kBrowseButton) {
    Browse();
    return 1;
  }
  if (id == IDOK || (id == kContactList && code == LBN_DBLCLK)) {
    description = text.Text(kMostDescription);
    EndDialog(1);
    return 1;
  }
  return ZarfDialog::OnCommand(record);
}

void WithDialog::Browse() {
  std::string path;
  if (!FileDialog(kFileDialogOpen, kFilter, kExtension, hwnd, path, kInCurrentFolder) || !Load(path)) return;
  shownPath.SetPath(path);
  if (!core::RememberExternalContacts(path)) {
    ShowInfo(this, "The settings could not be written. This file has to be chosen again the next time.");
  }
}
