#include "calendar/find_dialog.h"

#include <algorithm>
#include <utility>

#include "calendar/appointment_actions.h"
#include "framework/services.h"

namespace {

constexpr int kTemplate = 2006;

constexpr const char* kPartMissing = ". Not all appointments could be read.";

}  // namespace

FindDialog::FindDialog(core::CalendarSession& calendarSession, CommandGate& commandGate)
    : session(calendarSession), gate(commandGate), host(*this, list, session, gate) {
  session.AddListener(*this);
}

FindDialog::~FindDialog() {
  session.RemoveListener(*this);
}

bool FindDialog::Run(ZarfWnd* owner) {
  const WaitingScope waiting(gate);
  return Open(owner, kTemplate) == 1;
}

LRESULT FindDialog::OnInitDialog(const MessageRecord&) {
  text.LimitTo(core::TextFilter::kMostText);
  OkNeedsText(kTextEdit);
  goTo.Enable(false);
  if (!session.Filter().empty()) category.SetText(session.Filter());
  header.Create(this);
  list.Create(this);
  SetWindowText(list.Handle(), "Results");
  PlaceList();
  text.Focus();
  return 0;
}

// Comes before the dialog is first shown as well, when its controls have found their places.
LRESULT FindDialog::OnSize(const MessageRecord&) {
  PlaceList();
  return 0;
}

LRESULT FindDialog::OnAfterCreate(const MessageRecord&) {
  PlaceList();
  return 0;
}

void FindDialog::PlaceList() {
  RECT area;
  if (!GetWindowRect(GetDlgItem(hwnd, kResultArea), &area)) return;
  const POINT corner = ScreenToClient(hwnd, {area.left, area.top});
  header.Move(corner.x, corner.y, Width(area), kHeaderStripHeight, 1);
  list.Move(corner.x, corner.y + kHeaderStripHeight, Width(area),
            std::max(Height(area) - kHeaderStripHeight, 0), 1);
}

// ---- Searching ----

void FindDialog::Find() {
  searched = text.Text(core::TextFilter::kMostText);
  Search();
  list.FocusList();
}

void FindDialog::Search() {
  if (!searched || session.File() == nullptr) {
    list.SetFile(nullptr, nullptr);
    results.Clear();
    ShowCount();
    return;
  }
  BeginWaitCursor();
  // A list that was not made is shown as far as it goes, and tried again by the file watch.
  static_cast<void>(results.Run(*session.File(), *searched, session.Filter()));
  list.SetFile(session.File(), &results);
  EndWaitCursor();
  ShowCount();
}

void FindDialog::ShowCount() {
  std::string title = "Occurrences " + std::to_string(results.Count());
  if (!results.IsWhole()) title.append(kPartMissing);
  SetDialogTitle(hwnd, title);
  goTo.Enable(list.SelectedItem() >= 0);
}

void FindDialog::OnSessionChange(core::SessionChange change) {
  switch (change) {
    case core::SessionChange::kRecords:
      list.RefreshFromFile(ListRefresh::kByProgram);
      break;
    case core::SessionChange::kFile:
    case core::SessionChange::kRights:
      Search();
      break;
    default:
      break;
  }
}

// ---- The list and the buttons ----

LRESULT FindDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kFindButton:
      Find();
      return 1;
    case kGoToButton:
      GoTo();
      return 1;
    case kResultList:
      OnListNotice(HighWord(record.wParam), record.lParam);
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

void FindDialog::OnListNotice(unsigned code, LPARAM value) {
  switch (code) {
    case kListSelected:
      goTo.Enable(list.SelectedItem() >= 0);
      break;
    case kListDoubleClick:
      if (value >= 0) Edit(static_cast<int>(value));
      break;
    case kListFileChanged:
      keptSelection.OnListChanged(list, value);
      ShowCount();
      break;
    default:
      break;
  }
}

void FindDialog::Edit(int index) {
  // Posted: the rows may be others by now, or the editor may be open already.
  if (index != list.SelectedItem() || std::exchange(editing, true)) return;
  {
    const WaitingScope working(gate, false);
    EditCommand(session, host, list.KeyAt(index));
  }
  editing = false;
  list.FocusList();
}

void FindDialog::GoTo() {
  if (ReadSelected(session, host, list.KeyAt(list.SelectedItem()), chosen)) EndDialog(1);
}
