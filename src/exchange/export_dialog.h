// The dialog "Export": which appointments are written to which file. It lives on the stack for one Run and
// writes nothing itself.
#pragma once

#include <string>

#include "exchange/range_dialog.h"

class ExportDialog : public RangeDialog {
 public:
  // The numbers of its controls beside those of the range.
  enum ExportControlId { kExportButton = 500, kFileEdit = 700, kBrowseButton };

  // `lastPath` is shown at first.
  ExportDialog(ExchangeChoices& kept, const core::Date& today, std::string lastPath)
      : RangeDialog(kept, today), path(std::move(lastPath)) {}

  // True for "Export".
  bool Run(ZarfWnd* owner);
  // What was chosen then; the path is empty where none was named.
  const core::ExchangeOptions& Options() const { return options; }
  const std::string& Path() const { return path; }

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void Browse();
  void Export();

  core::ExchangeOptions options;
  std::string path;  // in the file system's encoding
  TextItem file{*this, kFileEdit};
};
