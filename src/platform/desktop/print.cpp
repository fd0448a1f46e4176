#include "platform/desktop/print.h"

#include <QFile>
#include <QPageRanges>
#include <QPainter>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <array>
#include <string_view>
#include <vector>

#include "platform/desktop/qt/font_handle.h"
#include "platform/desktop/qt/painter_context.h"
#include "platform/desktop/qt/window_table.h"
#include "platform/system/file.h"

namespace {

constexpr int kPixelsPerInch = 96;
constexpr qreal kMarginMm = 15;

// The pages that are to come out, in their order. A printer that makes the copies itself gets each page once.
std::vector<int> PagesToPrint(const QPrinter& printer, int count) {
  const QPageRanges ranges =
      printer.printRange() == QPrinter::PageRange ? printer.pageRanges() : QPageRanges();
  std::vector<int> pages;
  for (int page = 1; page <= count; ++page) {
    if (ranges.isEmpty() || ranges.contains(page)) pages.push_back(page);
  }
  if (printer.pageOrder() == QPrinter::LastPageFirst) pages = {pages.rbegin(), pages.rend()};
  const std::vector<int> once = pages;
  for (int copy = 1; !printer.supportsMultipleCopies() && copy < printer.copyCount(); ++copy) {
    pages.insert(pages.end(), once.begin(), once.end());
  }
  return pages;
}

// A file on a full disk ends somewhere, and nobody says so.
bool IsWholePdf(const QString& path) {
  constexpr std::string_view kEnd = "%%EOF\n";
  std::array<char, kEnd.size()> end{};
  platform::File file;
  return file.OpenReadOnly(QFile::encodeName(path).toStdString()) == platform::FileResult::kDone &&
         file.ReadAt(end.data(), end.size(), file.Size() - static_cast<std::int64_t>(end.size())) ==
             static_cast<std::int64_t>(end.size()) &&
         std::string_view(end.data(), end.size()) == kEnd;
}

bool Print(QPrinter& printer, const PrintJob& job) {
  QPainter painter;
  if (!painter.begin(&printer)) return false;
  const qreal scale = qreal{1} * printer.resolution() / kPixelsPerInch;
  const QSize area = printer.pageLayout().paintRectPixels(printer.resolution()).size() / scale;
  painter.scale(scale, scale);
  PainterContext context(painter);
  bool isFirst = true;
  for (const int page : PagesToPrint(printer, job.layOut({area.width(), area.height()}))) {
    if (!isFirst && !printer.newPage()) {
      printer.abort();
      return false;
    }
    isFirst = false;
    job.paint(&context, page);
  }
  return painter.end() && printer.printerState() != QPrinter::Error &&
         (printer.outputFormat() != QPrinter::PdfFormat || IsWholePdf(printer.outputFileName()));
}

}  // namespace

PrintResult AskAndPrint(HWND owner, const PrintJob& job) {
  UseDialogFont();
  const WindowEntry* over = FindWindowEntry(owner);
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(QString::fromStdString(job.title));
  printer.setPageMargins({kMarginMm, kMarginMm, kMarginMm, kMarginMm}, QPageLayout::Millimeter);
  QPrintDialog dialog(&printer, over != nullptr ? over->widget->window() : nullptr);
  dialog.setOption(QPrintDialog::PrintToFile);
  if (dialog.exec() != QDialog::Accepted) return PrintResult::kCancelled;
  return Print(printer, job) ? PrintResult::kDone : PrintResult::kFailed;
}
