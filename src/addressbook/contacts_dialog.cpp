#include "addressbook/contacts_dialog.h"

#include <utility>

#include "framework/animations.h"
#include "framework/notices.h"
#include "framework/password_dialog.h"
#include "framework/services.h"

namespace {

// The password that opened the book the last time: each look for somebody to invite opens it anew.
std::string& KnownPassword() {
  static std::string known;
  return known;
}

}  // namespace

ContactsDialog::ContactsDialog(const char* dialogTitle)
    : title(dialogTitle), refreshed(core::RefreshEnabled()) {
  core::SetRefreshEnabled(true);
  core::FileWatch::OfProcess().Add(*this);
}

ContactsDialog::~ContactsDialog() {
  core::FileWatch::OfProcess().Remove(*this);
  core::SetRefreshEnabled(refreshed);
}

LRESULT ContactsDialog::OnInitDialog(const MessageRecord&) {
  RECT window;
  PlaySound("open.wav");
  if (GetWindowRect(hwnd, &window)) RollDown(window.left, window.top, window.right, window.bottom);
  list.Create(this);
  SetWindowText(list.Handle(), "Contacts");
  PlaceList();
  list.FocusList();
  return 0;
}

// Comes before the dialog is first shown as well, when its controls have found their places.
LRESULT ContactsDialog::OnSize(const MessageRecord&) {
  PlaceList();
  return 0;
}

// The dialog is on the screen by now, for what there is to tell.
LRESULT ContactsDialog::OnAfterCreate(const MessageRecord&) {
  PlaceList();
  static_cast<void>(OpenBook());  // who needs it asks again
  return 0;
}

void ContactsDialog::PlaceList() {
  RECT area;
  if (!GetWindowRect(GetDlgItem(hwnd, kContactList), &area)) return;
  const POINT corner = ScreenToClient(hwnd, {area.left, area.top});
  list.Move(corner.x, corner.y, Width(area), Height(area), 1);
}

LRESULT ContactsDialog::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  if (id == kContactList) {
    const unsigned code = HighWord(record.wParam);
    if (code == kListFileChanged) {
      keptSelection.OnListChanged(list, record.lParam);
      ShowTitle();
    } else {
      OnListNotice(code, record.lParam);
    }
    return 1;
  }
  if (id == IDOK || id == IDCANCEL) PlaySound("close.wav");
  return ZarfDialog::OnCommand(record);
}

// ---- The book ----

core::RecordFile* ContactsDialog::OpenBook() {
  if (book.File() != nullptr) return book.File();
  std::string message;
  const bool opened = OpenAsking(message);
  ShowBook();
  if (!opened || !message.empty()) ShowInfo(this, message);
  return book.File();
}

bool ContactsDialog::OpenAsking(std::string& message) {
  const std::string path = core::AddressBookPath();
  const auto openWith = [&](const std::string& password) {
    BeginWaitCursor();
    const bool opened = book.Open(path, password, message);
    EndWaitCursor();
    return opened;
  };
  if (!core::HasOwnerPassword(path)) return openWith("");
  if (!KnownPassword().empty() && openWith(KnownPassword())) return true;
  std::string typed;
  // Who gives none may still read the book where that takes none.
  if (!AskOver(this)(path, typed)) typed.clear();
  if (!openWith(typed)) return false;
  KnownPassword() = typed;
  return true;
}

bool ContactsDialog::LookAfterBook() {
  core::RecordFile* const file = book.File();
  if (file == nullptr || file->PathState() != platform::FileAtPath::kReplaced) return false;
  core::AddressBook present;
  std::string message;
  if (!present.Open(file->Path(), file->Password(), message)) return false;
  const core::RecordKey selected = list.KeyAt(list.SelectedItem());
  list.SetFile(nullptr, nullptr);  // of the book that closes now
  book = std::move(present);
  ShowBook();
  if (!selected.IsNone()) list.SelectRecord(selected.id);
  return true;
}

void ContactsDialog::Reload(std::uint64_t recordId) {
  if (book.File() == nullptr) return;
  // A change that was not counted is no reason for the list to be made anew by itself.
  if (!list.RefreshFromFile(ListRefresh::kByProgram)) {
    book.Refresh();
    list.SetItemCount(static_cast<int>(book.List().Count()));
  }
  list.SelectRecord(recordId);
  ShowTitle();
}

void ContactsDialog::ShowBook() {
  list.SetFile(book.File(), book.File() != nullptr ? &book.List() : nullptr);
  ShowTitle();
}

void ContactsDialog::ShowTitle() {
  SetDialogTitle(hwnd, book.List().IsWhole() ? title : title + ". Not all contacts could be read.");
}

// What others edit is drawn as such, but nothing counts the locks that they take: it is read at each look.
void ContactsDialog::OnLook(const core::FileLook& look) {
  if (look.atPath == platform::FileAtPath::kReplaced && pause.IsOver()) {
    if (LookAfterBook()) {
      pause.Reset();
    } else {
      pause.Lengthen();
    }
  }
  list.RedrawItems();
}
