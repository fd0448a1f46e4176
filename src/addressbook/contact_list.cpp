#include "addressbook/contact_list.h"

#include "controls/selection_colours.h"
#include "framework/fonts.h"

namespace {

constexpr COLORREF kEvenRow = RGB(255, 255, 255);
constexpr COLORREF kOddRow = RGB(247, 246, 250);
constexpr COLORREF kRowText = RGB(0, 0, 0);

// From the edges of a row to its texts, and from the top of the name to the room of the address.
constexpr int kSideMargin = 5;
constexpr int kTopMargin = 1;
constexpr int kAddressTop = 10;
// What the address has in height beside its line of text, so that it does not touch the name.
constexpr int kAddressRoom = 4;

constexpr const char* kLocked = "locked...";

void DrawLine(HDC hdc, std::string_view text, int weight, const RECT& rect, UINT format) {
  hdc->SelectFont(GetFont(FontSans, weight));
  hdc->DrawText(std::string(text).c_str(), rect, format | DT_SINGLELINE | DT_END_ELLIPSIS);
}

}  // namespace

ContactList::ContactList(int listId)
    : ZarfWndListView({.commandId = listId, .findsByLetter = true, .oddCell = kOddRow, .evenCell = kEvenRow}),
      id(listId) {}

LRESULT ContactList::OnCreate(const MessageRecord& record) {
  const TextMetrics line = GetTextMetrics(GetFont(FontSans, 400));
  SetRowHeight(2 * kTopMargin + kAddressTop + line.height + kAddressRoom);
  return ZarfWndListView::OnCreate(record);
}

bool ContactList::Read(core::RecordFile& book, core::RecordList& shown, int index,
                       core::Contact& contact) const {
  const core::RecordKey key = shown.KeyAt(static_cast<std::size_t>(index));
  return book.ReadRecord(&contact, key) && (contact.header.editLock == 0 || key == edited);
}

void ContactList::DrawRecordCell(core::RecordFile& book, core::RecordList& shown, HDC hdc, COLORREF,
                                 int index, int state, const RECT& rect) {
  if (index < 0) return;
  if (state == 1) hdc->FillRect(rect, HasFocusMark() ? kSelection : kIdleSelection);
  RECT row = {rect.left + kSideMargin, rect.top + kTopMargin, rect.right - kSideMargin,
              rect.bottom - kTopMargin};
  hdc->SetTextColor(kRowText);
  core::Contact contact;
  if (!Read(book, shown, index, contact)) {
    DrawLine(hdc, kLocked, 400, row, DT_VCENTER);
    return;
  }
  DrawLine(hdc, core::ReadText(contact.name), 700, row, DT_LEFT);
  row.top += kAddressTop;
  DrawLine(hdc, core::ReadText(contact.email), 400, row, DT_VCENTER);
}

std::string ContactList::RecordCellText(core::RecordFile& book, core::RecordList& shown, int index) {
  core::Contact contact;
  if (!Read(book, shown, index, contact)) return kLocked;
  std::string text(core::ReadText(contact.name));
  const std::string_view email = core::ReadText(contact.email);
  if (!email.empty()) text.append(", ").append(email);
  return text;
}

bool ContactList::OnListKey(unsigned key) {
  if (key != VK_INSERT && key != VK_DELETE) return false;
  TellParent(id, static_cast<LPARAM>(key), kListOwn);
  return true;
}
