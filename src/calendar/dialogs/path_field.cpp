#include "calendar/dialogs/path_field.h"

#include "framework/notices.h"
#include "framework/shell_services.h"

bool CheckPathFits(ZarfWnd* dialog, const TextItem& edit, std::size_t bytes) {
  if (edit.Path().size() <= bytes) return true;
  ShowInfo(dialog, "This path is too long: an appointment keeps no more than " + std::to_string(bytes) +
                       " bytes of it.");
  edit.Focus();
  return false;
}

void BrowseInto(HWND dialog, const TextItem& edit, const char* filter) {
  std::string path;
  if (FileDialog(kFileDialogOpen, filter, "", dialog, path, kInCurrentFolder)) edit.SetPath(path);
  edit.Focus();
}
