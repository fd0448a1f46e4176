#include "shell/frame_commands.h"

#include <algorithm>
#include <iterator>

#include "framework/notices.h"
#include "framework/pane.h"
#include "framework/shell_services.h"
#include "shell/accelerators.h"
#include "shell/commands.h"
#include "shell/options_dialog.h"
#include "shell/skins_dialog.h"
#include "shell/skins_menu.h"
#include "shell/web_pages.h"

namespace {

// Which accelerators work only while a certain pane is current.
constexpr int kAnyPane = -1;
struct AcceleratorCommand {
  unsigned accelerator;
  unsigned command;
  LPARAM value = 0;
  int pane = kAnyPane;
};

constexpr AcceleratorCommand kAcceleratorCommands[] = {
    {kAccNew, ID_ITEM_NEW},          {kAccFind, ID_FIND},          {kAccNewFile, ID_FILE_NEW},
    {kAccOpenFile, ID_FILE_OPEN},    {kAccPrint, ID_PRINT},        {kAccHelp, ID_HELP_CONTENTS},
    {kAccFileMenu, ID_FILE_MENU},    {kAccHelpMenu, ID_HELP_MENU}, {kAccFirstPane, ID_PANE, 0},
    {kAccSecondPane, ID_PANE, 1, 0}, {kAccCut, ID_CUT, 0, 1},      {kAccCopy, ID_COPY},
    {kAccPaste, ID_PASTE},           {kAccUndo, ID_UNDO_DELETE},   {kAccOpenAttachment, ID_OPEN_ATTACHMENT},
    {kAccEdit, ID_ITEM_EDIT},        {kAccDelete, ID_ITEM_DELETE},
};

}  // namespace

bool PostAccelerator(HWND frame, unsigned id) {
  const auto* const found =
      std::find_if(std::begin(kAcceleratorCommands), std::end(kAcceleratorCommands),
                   [id](const AcceleratorCommand& entry) { return entry.accelerator == id; });
  if (found == std::end(kAcceleratorCommands)) return false;
  if (found->pane == kAnyPane || found->pane == CurrentPaneIndex())
    PostMessage(frame, WM_COMMAND, found->command, found->value);
  return true;
}

void RunFrameCommand(ZarfWnd& frame, unsigned id, const std::string& about) {
  switch (id) {
    case ID_PRODUCT_WEB:
      ShellOpen(kProductPage);
      return;
    case ID_COMPANY_WEB:
      ShellOpen(kCompanyPage);
      return;
    case ID_OPTIONS:
      ShowOptionsDialog(frame);
      return;
    case ID_SKINS:
      ShowSkinsDialog(&frame);
      return;
    case ID_EXIT:
      frame.Post(WM_CLOSE, 0, 0);
      return;
    case ID_ABOUT:
      ShowInfo(&frame, about);
      return;
    default:
      if (id >= ID_FIRST_SKIN && id <= ID_LAST_SKIN) SelectSkin(&frame, static_cast<int>(id - ID_FIRST_SKIN));
      return;
  }
}
