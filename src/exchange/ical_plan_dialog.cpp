#include "exchange/ical_plan_dialog.h"

#include <algorithm>
#include <string>
#include <vector>

#include "core/time_texts.h"
#include "platform/system/code_page.h"

namespace {

constexpr int kTemplate = 2021;

// More lines are only counted: nobody reads them, and the list would take long over them.
constexpr std::size_t kMostLines = 5000;

// As controls take a text.
std::string Stored(const std::string& text) {
  bool replaced = false;
  return platform::NearestInCodePage(text, replaced);
}

std::string Listed(const core::IcalLine& line) {
  const std::string day = line.date.day == 0 ? "" : core::FormatDate(line.date) + "  ";
  return Stored(day + line.subject + (line.subject.empty() ? "" : ": ") + line.what);
}

bool ChangesAnything(const core::IcalUpdate& update) {
  using core::IcalFate;
  return update.Count(IcalFate::kAdd) + update.Count(IcalFate::kChange) + update.Count(IcalFate::kDelete) !=
         0;
}

}  // namespace

bool IcalPlanDialog::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT IcalPlanDialog::OnInitDialog(const MessageRecord&) {
  std::string text;
  for (const std::string& line : core::DescribeUpdate(update)) text += (text.empty() ? "" : "\r\n") + line;
  counts.SetText(Stored(text));
  FillList();
  importButton.Enable(ChangesAnything(update));
  return 1;
}

void IcalPlanDialog::FillList() {
  const std::vector<core::IcalLine> lines = core::ListUpdate(update);
  const std::size_t shown = std::min(lines.size(), kMostLines);
  for (std::size_t i = 0; i < shown; ++i) list.Add(Listed(lines[i]));
  if (lines.size() > shown) list.Add("... and " + std::to_string(lines.size() - shown) + " more.");
}
