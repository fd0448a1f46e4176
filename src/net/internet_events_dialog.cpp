#include "net/internet_events_dialog.h"

#include "addressbook/address_book_window.h"
#include "addressbook/contact_chooser.h"
#include "framework/notices.h"
#include "platform/desktop/application.h"

namespace {

constexpr int kTemplate = 1011;

// An edit takes one character more than is kept of it.
constexpr std::size_t kSubjectTyped = sizeof(core::RecordHeader::eventSubject);
constexpr std::size_t kSubjectKept = kSubjectTyped - 1;

std::string OwnerEmailOf(const core::RecordFile& calendar) {
  core::HeaderBlock header;
  return calendar.ReadHeaderBlock(header) ? std::string(core::ReadText(header.ownerIdentity.email)) : "";
}

}  // namespace

InternetEventsDialog::InternetEventsDialog(core::Appointment& record, core::ParticipantList& list,
                                           const core::RecordFile& calendar, bool unsaved)
    : appointment(record),
      participants(list),
      isOwner(core::IsEventOwner(calendar, record)),
      isUnsaved(unsaved),
      userEmail(OwnerEmailOf(calendar)) {}

int InternetEventsDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate);
}

LRESULT InternetEventsDialog::OnInitDialog(const MessageRecord&) {
  subject.LimitTo(kSubjectTyped);
  subject.SetText(std::string(core::ReadText(appointment.header.eventSubject)));
  rows.Create(this);
  rows.ShowParticipants(participants.Participants());
  ok.Enable(isUnsaved && isOwner);
  remove.Enable(false);
  ShowOwner();
  PlaceList();
  // Who was invited knows the event by its subject.
  const bool subjectStays = !isOwner || rows.ItemCount() > 0;
  subject.Enable(!subjectStays);
  if (!subjectStays) {
    subject.Focus();
  } else if (isOwner) {
    rows.FocusList();
  } else {
    DialogItem(*this, IDCANCEL).Focus();
  }
  return 0;
}

void InternetEventsDialog::ShowOwner() {
  const auto& owner = appointment.header.ownerIdentity;
  const std::string name(core::ReadText(owner.userName));
  ownerLine.SetText("Owner: " + name);
  ownerText.SetText("Owner:\n\r" + name + "\n\r" + std::string(core::ReadText(owner.email)));
  ownerLine.SetVisible(isOwner);
  ownerText.SetVisible(!isOwner);
  if (isOwner) return;
  rows.Hide();
  invite.Enable(false);
}

// Comes before the dialog is first shown as well, when its controls have found their places.
LRESULT InternetEventsDialog::OnSize(const MessageRecord&) {
  PlaceList();
  return 0;
}

LRESULT InternetEventsDialog::OnAfterCreate(const MessageRecord&) {
  PlaceList();
  return 0;
}

void InternetEventsDialog::PlaceList() {
  RECT area;
  if (!GetWindowRect(GetDlgItem(hwnd, kListArea), &area)) return;
  const POINT corner = ScreenToClient(hwnd, {area.left, area.top});
  rows.Move(corner.x, corner.y, Width(area), Height(area), 1);
}

LRESULT InternetEventsDialog::OnCommand(const MessageRecord& record) {
  const unsigned code = HighWord(record.wParam);
  switch (LowWord(record.wParam)) {
    case IDOK:
      OnOk();
      return 1;
    case kInviteButton:
      Invite();
      return 1;
    case kRemoveButton:
      Remove();
      return 1;
    case kAddressBookButton:
      AddressBookCommand(this);
      return 1;
    case kSubjectEdit:
      if (code == EN_CHANGE) OnSubjectChanged();
      return 1;
    case kParticipantList:
      if (code == kListSelected && HasSubject() && isOwner) remove.Enable(true);
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

bool InternetEventsDialog::HasSubject() const {
  return !subject.Text(kSubjectKept).empty();
}

void InternetEventsDialog::OnSubjectChanged() {
  ok.Enable(isOwner && rows.ItemCount() > 0 && HasSubject());
}

void InternetEventsDialog::Invite() {
  std::string name;
  std::string email;
  if (!ChooseContact(this, name, email)) return;
  if (email.empty()) {
    ShowInfo(this, "This contact has no e-mail address.\r\nNobody was invited.");
    return;
  }
  switch (participants.Invite(name, email, userEmail)) {
    case core::InviteResult::kInvited:
      rows.ShowParticipants(participants.Participants());
      if (HasSubject() && isOwner) ok.Enable(true);
      break;
    case core::InviteResult::kOwnAddress:
    case core::InviteResult::kDuplicate:
      MessageBeep();
      break;
    case core::InviteResult::kFull:
      break;
  }
}

void InternetEventsDialog::Remove() {
  if (rows.SelectedItem() < 0) {
    MessageBeep();
    return;
  }
  participants.Remove(rows.SelectedEmail(), appointment.header.eventRole);
  rows.ShowParticipants(participants.Participants());
  if (isOwner) ok.Enable(true);
}

void InternetEventsDialog::OnOk() {
  // Enter reaches the dialog also while the button is disabled.
  if (!IsWindowEnabled(ok.Handle())) return;
  core::WriteText(appointment.header.eventSubject, subject.Text(kSubjectKept));
  EndDialog(1);
}
