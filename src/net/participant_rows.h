// The list of an event's participants in a dialog. Each row shows a participant's e-mail address and the
// state of his invitation, and below them his name. A letter typed goes to the next e-mail address that
// begins with it.
#pragma once

#include <vector>

#include "controls/list_view.h"
#include "core/events/participant.h"

class ParticipantRows : public ZarfWndListView {
 public:
  // Its parent gets kListSelected for each row that the user selects, by the mouse or by a key.
  explicit ParticipantRows(int commandId);

  // Shows those who are in use, from now on; none is selected.
  void ShowParticipants(const std::vector<core::Participant>& participants);
  // The e-mail address of the selected row; empty for none.
  std::string SelectedEmail() const;

  LRESULT OnCreate(const MessageRecord& record) override;
  bool SelectItem(int index) override;
  void DrawCell(HDC hdc, COLORREF colour, int index, int state, const RECT& rect) override;
  std::string CellText(int index) override;

 private:
  const int commandId;
  std::vector<core::Participant> rows;
};
