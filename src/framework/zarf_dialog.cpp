#include "framework/zarf_dialog.h"

#include <algorithm>

#include "framework/animations.h"
#include "framework/services.h"

namespace {

// The object whose dialog is being opened: the dialog's first message binds the two.
ZarfDialog* beingOpened = nullptr;

}  // namespace

int ZarfDialog::Open(ZarfWnd* owner, int templateId) {
  return DoModal(owner, templateId);
}

void ZarfDialog::Place() {
  CenterOver(Parent(), hwnd);
}

void ZarfDialog::ZoomOpen() {
  RECT place;
  if (!GetWindowRect(hwnd, &place)) return;
  const POINT middle = {place.left + Width(place) / 2, place.top + Height(place) / 2};
  ZoomRect({middle.x, middle.y, middle.x, middle.y}, place);
}

int ZarfDialog::DoModal(ZarfWnd* owner, int templateId) {
  beingOpened = this;
  const int result =
      DialogBox(templateId, owner != nullptr ? owner->Handle() : nullptr, SharedDialogProcedure);
  beingOpened = nullptr;
  return result;
}

bool ZarfDialog::CreateModeless(ZarfWnd* owner, int templateId) {
  beingOpened = this;
  hwnd = CreateDialog(templateId, owner != nullptr ? owner->Handle() : nullptr, SharedDialogProcedure);
  beingOpened = nullptr;
  return hwnd != nullptr;
}

LRESULT ZarfDialog::SharedDialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  auto* object = static_cast<ZarfDialog*>(reinterpret_cast<ZarfWnd*>(GetWindowWord(dialog)));
  if (object != nullptr) return object->WindowProc({dialog, message, wParam, lParam});
  if (beingOpened == nullptr) return 0;
  object = beingOpened;
  beingOpened = nullptr;
  object->hwnd = dialog;
  SetWindowWord(dialog, reinterpret_cast<std::intptr_t>(static_cast<ZarfWnd*>(object)));
  return 0;
}

LRESULT ZarfDialog::WindowProc(const MessageRecord& record) {
  switch (record.message) {
    case WM_INITDIALOG: {
      Place();
      const LRESULT result = OnInitDialog(record);
      PostMessage(record.hwnd, ZWM_AFTERCREATE, 0, 0);
      return result;
    }
    case WM_PAINT:
      Paint();
      return 0;
    case WM_TIMER:
      return record.hwnd == hwnd ? OnTimer(record) : 0;
    case WM_COMMAND:
      return Command(record);
    case WM_DESTROY:
    case WM_SIZE:
    case WM_CLOSE:
    case WM_SETCURSOR:
    case WM_GETMINMAXINFO:
    case WM_MOUSEMOVE:
    case WM_LBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_LBUTTONDBLCLK:
    case WM_RBUTTONDOWN:
    case WM_RBUTTONUP:
    case ZWM_AFTERCREATE:
      return ZarfWnd::WindowProc(record);
    default:
      return DefaultProc(record);
  }
}

LRESULT ZarfDialog::DefaultProc(const MessageRecord&) {
  return 0;
}

void ZarfDialog::OkNeedsText(int editId) {
  neededTexts.push_back(editId);
  EnableWindow(GetDlgItem(hwnd, IDOK), HasNeededTexts());
}

bool ZarfDialog::HasNeededTexts() const {
  return std::none_of(neededTexts.begin(), neededTexts.end(),
                      [this](int edit) { return GetDlgItemPath(hwnd, edit).empty(); });
}

LRESULT ZarfDialog::Command(const MessageRecord& record) {
  if (!neededTexts.empty()) {
    const bool enough = HasNeededTexts();
    EnableWindow(GetDlgItem(hwnd, IDOK), enough);
    // Enter reaches the dialog also while the button is disabled.
    if (LowWord(record.wParam) == IDOK && !enough) return 1;
  }
  return OnCommand(record);
}

LRESULT ZarfDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case IDOK:
      EndDialog(1);
      return 1;
    case IDCANCEL:
      EndDialog(0);
      return 1;
    default:
      return 0;
  }
}

LRESULT ZarfDialog::OnInitDialog(const MessageRecord&) {
  return 1;
}
void ZarfDialog::EndDialog(int result) {
  ::EndDialog(hwnd, result);
}

LRESULT ZarfDialog::SendItemMessage(int id, UINT message, WPARAM wParam, LPARAM lParam) {
  return SendDlgItemMessage(hwnd, id, message, wParam, lParam);
}

void ZarfDialog::SetItemText(int id, const char* text) {
  SetDlgItemText(hwnd, id, text);
}
