#include "calendar/panel_commands.h"

#include "calendar/appointment_actions.h"
#include "calendar/appointment_menu.h"
#include "calendar/event_actions.h"
#include "calendar/find_dialog.h"
#include "calendar/views/recycle_bin.h"
#include "shell/commands.h"

bool PanelCommands::Run(unsigned command) {
  switch (command) {
    case ID_ITEM_EDIT:
    case ID_ITEM_DELETE:
      // Who sees a week or a month does not mean the appointment that was selected in the list.
      if (views.ShowingDay()) RunInScope(command);
      return true;
    case ID_UNDO_DELETE:
      panel.Post(WM_COMMAND, kBinId, ID_UNDO_DELETE);
      return true;
    case ID_ITEM_NEW:
    case ID_FIND:
    case ID_CUT:
    case ID_COPY:
    case ID_PASTE:
    case ID_INTERNET_EVENTS:
    case ID_OPEN_ATTACHMENT:
      RunInScope(command);
      return true;
    default:
      return false;
  }
}

void PanelCommands::RunInScope(unsigned command) {
  const CommandScope scope(gate);
  if (!scope.Entered()) return;
  switch (command) {
    case ID_ITEM_NEW:
      NewCommand(session, host);
      break;
    case ID_ITEM_EDIT:
      EditCommand(session, host, SelectedKey());
      break;
    case ID_ITEM_DELETE:
      DeleteCommand(session, host, SelectedKey());
      break;
    case ID_FIND:
      Find();
      break;
    case ID_CUT:
      CutCommand(session, host, SelectedKey());
      break;
    case ID_COPY:
      CopyCommand(session, host, SelectedKey());
      break;
    case ID_PASTE:
      PasteCommand(session, host);
      break;
    case ID_INTERNET_EVENTS:
      InternetEventsCommand(session, host, views.ShowingDay() ? SelectedKey() : core::RecordKey());
      break;
    default:
      OpenAttachmentCommand(session, host, SelectedKey());
      break;
  }
}

void PanelCommands::Find() {
  if (session.File() == nullptr) return;
  FindDialog dialog(session, gate);
  if (dialog.Run(&panel)) GoToCommand(session, host, dialog.Chosen());
}

LRESULT PanelCommands::RunForBin(unsigned command) {
  const CommandScope scope(gate);
  if (!scope.Entered()) return 0;
  switch (command) {
    case ID_ITEM_DELETE:
      return DropOnBinCommand(session, host, SelectedKey()) ? 1 : 0;
    case ID_UNDO_DELETE:
      UndoDeleteCommand(session, host);
      return 1;
    default:
      host.Tell(kBinIsEmptyText);
      return 0;
  }
}

void PanelCommands::Drop(bool copy, const core::Date& date) {
  const CommandScope scope(gate);
  if (scope.Entered()) DropCommand(session, host, SelectedKey(), copy, date);
}

void PanelCommands::ShowMenu(bool onRecord) const {
  core::Appointment record;
  const bool readable =
      onRecord && session.File() != nullptr && session.File()->ReadRecord(&record, SelectedKey());
  TrackAppointmentMenu(panel.Handle(), MenuPoint(),
                       {.onRecord = onRecord,
                        .hasAttachment = readable && core::HasAttachment(record),
                        .canUndo = !session.Bin().IsEmpty(),
                        .canPaste = !session.Clipboard().IsEmpty()});
}

// At the mouse, but by the selected row when a key asked for the menu while the mouse was elsewhere.
POINT PanelCommands::MenuPoint() const {
  const POINT mouse = GetCursorPos();
  RECT list;
  GetWindowRect(dayList.Handle(), &list);
  return Contains(list, mouse) ? mouse : dayList.MenuPoint(dayList.SelectedItem());
}
