#include "exchange/report_dialog.h"

#include <algorithm>
#include <limits>

#include "core/ini_file.h"
#include "exchange/report_pages.h"
#include "framework/notices.h"
#include "framework/progress_window.h"
#include "framework/services.h"
#include "platform/desktop/font.h"
#include "platform/desktop/print.h"
#include "platform/system/file.h"

namespace {

constexpr int kTemplate = 2011;

// What the dialog grows to when it shows the report, pixels.
constexpr SIZE kSizeWithPreview = {540, 460};

std::string TextOf(const std::string& path) {
  std::string text;
  platform::ReadWholeFile(path, std::numeric_limits<std::int32_t>::max(), text);
  return text;
}

}  // namespace

ReportDialog::ReportDialog(const core::RecordFile& calendar, ExchangeChoices& kept, const core::Date& today,
                           std::optional<std::uint64_t> selected)
    : RangeDialog(kept, today),
      file(calendar),
      id(selected),
      path(core::ModuleFolder() + "/report.txt"),
      font(CreateFont({"Verdana", -11, 400, false})) {}

ReportDialog::~ReportDialog() {
  DeleteFont(font);
}

void ReportDialog::Run(ZarfWnd* owner) {
  Open(owner, kTemplate);
}

LRESULT ReportDialog::OnInitDialog(const MessageRecord&) {
  ShowChoices(kDatesRadio);
  recordRadio.Enable(id.has_value());
  printButton.Enable(false);
  SendItemMessage(kPreviewEdit, WM_SETFONT, reinterpret_cast<WPARAM>(font), 0);
  return 1;
}

LRESULT ReportDialog::OnCommand(const MessageRecord& record) {
  switch (LowWord(record.wParam)) {
    case kMakeButton:
      MakeReport();
      return 1;
    case kPrintButton:
      Print();
      return 1;
    default:
      return RangeDialog::OnCommand(record);
  }
}

void ReportDialog::MakeReport() {
  core::ExchangeOptions options = TakeChoices();
  options.mode = core::ExchangeMode::kReport;
  if (recordRadio.Checked() && id) {
    options.range = core::ExchangeRange::kRecord;
    options.id = *id;
  }
  Write(options);
  if (!IsWindow(hwnd)) return;
  printButton.Enable(true);
  ShowPreview();
}

void ReportDialog::Write(const core::ExchangeOptions& options) {
  ProgressWindow progress;
  core::ExchangeProgress showProgress;
  if (options.range == core::ExchangeRange::kDates) {
    progress.BeginCancellable(this, "Report...", "Making the report");
    showProgress = [&progress](std::int64_t done, std::int64_t whole) {
      return progress.Advance(done, whole);
    };
  }
  BeginWaitCursor();
  const core::WriteResult result = core::WriteAppointments(file, options, path, showProgress);
  EndWaitCursor();
  progress.Close();
  // Where there is no new report the preview shows the last one: that is said by its title. What is missing
  // in a new one is not to be seen.
  const bool toTell =
      result.outcome == core::WriteOutcome::kParts || result.outcome == core::WriteOutcome::kSourceFailed;
  if (toTell && IsWindow(hwnd)) ShowInfo(this, result.message);
}

void ReportDialog::ShowPreview() {
  RECT inside;
  RECT outside;
  if (!IsWindowVisible(preview.Handle()) && ::GetClientRect(hwnd, &inside) && GetWindowRect(hwnd, &outside)) {
    preview.SetVisible(true);
    MoveWindow(hwnd, outside.left, outside.top, std::max(Width(inside), kSizeWithPreview.cx),
               std::max(Height(inside), kSizeWithPreview.cy));
    Place();
  }
  BeginWaitCursor();
  preview.SetText(TextOf(path));
  EndWaitCursor();
}

void ReportDialog::Print() {
  ReportPages pages(TextOf(path), font);
  const PrintResult result =
      AskAndPrint(hwnd, {.title = "Tempoline Report",
                         .layOut = [&pages](SIZE area) { return pages.LayOut(area); },
                         .paint = [&pages](HDC hdc, int page) { pages.Paint(hdc, page); }});
  if (result == PrintResult::kFailed && IsWindow(hwnd)) ShowInfo(this, "The report could not be printed.");
  EndDialog(1);
}
