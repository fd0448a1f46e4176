#include "exchange/export_dialog.h"

#include "exchange/file_kinds.h"
#include "framework/shell_services.h"

namespace {

constexpr int kTemplate = 2012;

}  // namespace

bool ExportDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT ExportDialog::OnInitDialog(const MessageRecord&) {
  ShowChoices(kAllRadio);
  file.LimitTo(kMostPathCharacters);
  file.SetPath(path);
  return 1;
}

LRESULT ExportDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kBrowseButton:
      Browse();
      return 1;
    case IDOK:
    case kExportButton:
      Export();
      return 1;
    default:
      return RangeDialog::OnCommand(record);
  }
}

void ExportDialog::Browse() {
  std::string chosen;
  if (FileDialog(kFileDialogSave, kExchangeFilter, kExchangeExtension, hwnd, chosen, kInWorksFolder))
    file.SetPath(chosen);
  file.Focus();
}

void ExportDialog::Export() {
  options = TakeChoices();
  path = file.Path();
  EndDialog(1);
}
