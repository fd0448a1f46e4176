#include "net/participant_rows.h"

#include <algorithm>
#include <iterator>

#include "framework/drawing.h"
#include "framework/fonts.h"

namespace {

constexpr int kInset = 4;
constexpr int kMargins = 4;  // above and below the two lines
constexpr int kGap = 10;     // between address and state
constexpr COLORREF kText = RGB(0, 0, 255);
constexpr COLORREF kSelected = RGB(219, 219, 219);

}  // namespace

ParticipantRows::ParticipantRows(int listId)
    : ZarfWndListView({.commandId = listId, .findsByLetter = true}), commandId(listId) {}

void ParticipantRows::ShowParticipants(const std::vector<core::Participant>& participants) {
  rows.clear();
  std::copy_if(participants.begin(), participants.end(), std::back_inserter(rows),
               [](const core::Participant& one) { return one.header.inUse != 0; });
  SetItemCount(static_cast<int>(rows.size()));
  Invalidate(nullptr, 0);
}

std::string ParticipantRows::SelectedEmail() const {
  const int index = SelectedItem();
  return index < 0 ? "" : std::string(core::ReadText(rows[static_cast<std::size_t>(index)].email));
}

LRESULT ParticipantRows::OnCreate(const MessageRecord& record) {
  const TextMetrics metrics = GetTextMetrics(GetFont(FontSans, 400));
  SetRowHeight(2 * (metrics.height + metrics.externalLeading) + kMargins);
  SetWindowText(hwnd, "Participants");
  return ZarfWndListView::OnCreate(record);
}

bool ParticipantRows::SelectItem(int index) {
  if (!ZarfWndListView::SelectItem(index)) return false;
  TellParent(commandId, index, kListSelected);
  return true;
}

void ParticipantRows::DrawCell(HDC hdc, COLORREF, int index, int state, const RECT& rect) {
  if (index < 0) return;
  if (state != 0) hdc->FillRect(rect, kSelected);
  const core::Participant& one = rows[static_cast<std::size_t>(index)];
  const char* const stateText = core::ParticipantStateText(one.state);
  hdc->SelectFont(GetFont(FontSans, 400));
  hdc->SetTextColor(kText);
  RECT line = {rect.left + kInset, rect.top + kMargins / 2, rect.right - kInset, rect.top + Height(rect) / 2};
  const int stateLeft = line.right - MeasureText(GetFont(FontSans, 400), stateText).cx;
  const UINT place = DT_SINGLELINE | DT_VCENTER;
  hdc->DrawText(stateText, {stateLeft, line.top, line.right, line.bottom}, place);
  hdc->DrawText(std::string(core::ReadText(one.email)).c_str(),
                {line.left, line.top, std::max(stateLeft - kGap, line.left), line.bottom},
                place | DT_END_ELLIPSIS);
  line.top = line.bottom;
  line.bottom = rect.bottom - kMargins / 2;
  hdc->DrawText(std::string(core::ReadText(one.name)).c_str(), line, place | DT_END_ELLIPSIS);
}

std::string ParticipantRows::CellText(int index) {
  const core::Participant& one = rows[static_cast<std::size_t>(index)];
  std::string text(core::ReadText(one.email));
  return text.append(", ")
      .append(core::ReadText(one.name))
      .append(", ")
      .append(core::ParticipantStateText(one.state));
}
