// The dialog "Print Report": it writes a report of the appointments that are chosen to "report.txt" in the
// program folder, shows it and prints it. It lives on the stack for one Run.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "exchange/range_dialog.h"

class ReportDialog : public RangeDialog {
 public:
  // The numbers of its controls beside those of the range.
  enum ReportControlId { kMakeButton = IDOK, kPrintButton = 401, kPreviewEdit = 1000 };

  // The file and `kept` must outlive the dialog. `selected` is the id of the appointment that is the "current
  // record", if there is one.
  ReportDialog(const core::RecordFile& calendar, ExchangeChoices& kept, const core::Date& today,
               std::optional<std::uint64_t> selected);
  ~ReportDialog() override;

  void Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void MakeReport();
  void Write(const core::ExchangeOptions& options);
  void ShowPreview();
  void Print();

  const core::RecordFile& file;
  const std::optional<std::uint64_t> id;
  const std::string path;
  const HFONT font;
  CheckItem recordRadio{*this, kRecordRadio};
  CheckItem allRadio{*this, kAllRadio};
  DialogItem printButton{*this, kPrintButton};
  TextItem preview{*this, kPreviewEdit};
};
