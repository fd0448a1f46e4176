#include "pickers/time_picker.h"

#include "platform/desktop/message_box.h"

namespace {

constexpr int kTemplate = 1007;

}  // namespace

bool TimePickerDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

int TimePickerDialog::Margin() const {
  return 0;
}

LRESULT TimePickerDialog::OnCommand(const MessageRecord& record) {
  const unsigned id = LowWord(record.wParam);
  // As in a drop-down box, Enter and Escape are first of all the open list's.
  if ((id == IDOK || id == IDCANCEL) && track.ChoosesStart()) {
    track.CloseList(id == IDOK);
    return 1;
  }
  if (id == IDOK) track.TakeSelection();
  return PickerDialog::OnCommand(record);
}
