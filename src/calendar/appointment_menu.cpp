#include "calendar/appointment_menu.h"

#include "platform/desktop/menu.h"
#include "resources/strings.h"
#include "resources/text_ids.h"
#include "shell/commands.h"

namespace {

void AppendItem(HMENU menu, int textId, unsigned command, bool enabled) {
  AppendMenu(menu, enabled ? MF_STRING : MF_STRING | MF_GRAYED, command, resources::FindText(textId));
}

}  // namespace

void TrackAppointmentMenu(HWND owner, POINT screenPoint, const AppointmentMenuState& state) {
  const HMENU menu = CreatePopupMenu();
  AppendItem(menu, text::kNewItem, ID_ITEM_NEW, true);
  AppendItem(menu, text::kEditItem, ID_ITEM_EDIT, state.onRecord);
  AppendItem(menu, text::kDeleteItem, ID_ITEM_DELETE, state.onRecord);
  AppendMenu(menu, MF_SEPARATOR, 0, "");
  AppendItem(menu, text::kUndoDeleteItem, ID_UNDO_DELETE, state.canUndo);
  AppendMenu(menu, MF_SEPARATOR, 0, "");
  AppendItem(menu, text::kCutItem, ID_CUT, state.onRecord);
  AppendItem(menu, text::kCopyItem, ID_COPY, state.onRecord);
  AppendItem(menu, text::kPasteItem, ID_PASTE, state.canPaste);
  AppendMenu(menu, MF_SEPARATOR, 0, "");
  AppendItem(menu, text::kOpenAttachmentItem, ID_OPEN_ATTACHMENT, state.onRecord && state.hasAttachment);
  TrackPopupMenu(menu, screenPoint, owner);
  DestroyMenu(menu);
}
