#include "exchange/import_wizard.h"

#include <algorithm>

#include "core/exchange/ical_writer.h"
#include "exchange/file_kinds.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "framework/shell_services.h"
#include "platform/system/code_page.h"
#include "platform/system/file.h"

namespace {

constexpr int kTemplate = 2013;

// More of a file is not shown: nobody reads it, and the edit would take long over it.
constexpr std::size_t kMostShown = std::size_t{1} << 18;

constexpr int kQuoteLine = 0;
constexpr int kNoQuoteLine = 1;
constexpr const char* kNoQuoteName = "None";

constexpr const char* kNothingMapped =
    "No column of the file is mapped to a field of Daybrix. Choose a field for at least one of them.";

// The beginning of a file as an edit shows it, in code page 1252.
std::string BeginningOf(const std::string& path, bool& isWhole) {
  platform::File file;
  std::string text;
  isWhole = true;
  if (file.OpenReadOnly(path) != platform::FileResult::kDone) return text;
  text.resize(kMostShown);
  const std::int64_t read = file.ReadAt(text.data(), text.size(), 0);
  text.resize(read > 0 ? static_cast<std::size_t>(read) : 0);
  isWhole = static_cast<std::int64_t>(text.size()) >= file.Size();
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  bool replaced = false;
  if (text.starts_with(kMark)) {
    text = platform::NearestInCodePage(std::string_view(text).substr(kMark.size()), replaced);
  }
  std::replace(text.begin(), text.end(), '\0', ' ');
  return text;
}

std::string NameOf(int fieldIndex) {
  const bool ignored = fieldIndex == core::kIgnoredColumn;
  return std::string(ignored ? core::kIgnoredColumnName
                             : core::kExchangeFields[static_cast<std::size_t>(fieldIndex)].name);
}

bool IsSame(const core::ImportFormat& left, const core::ImportFormat& right) {
  return left.header == right.header && left.separator == right.separator && left.quote == right.quote;
}

}  // namespace

bool ImportWizard::Run(ZarfWnd* owner) {
  return Open(owner, kTemplate) == 1;
}

LRESULT ImportWizard::OnInitDialog(const MessageRecord&) {
  file.LimitTo(kMostPathCharacters);
  file.SetPath(path);
  quote.Add("\"");
  quote.Add(kNoQuoteName);
  for (int i = 0; i < static_cast<int>(core::kExchangeFields.size()); ++i) field.Add(NameOf(i));
  field.Add(NameOf(core::kIgnoredColumn));
  field.Select(0);
  ShowPage(kFilePage);
  return 0;
}

LRESULT ImportWizard::OnCommand(const MessageRecord& record) {
  const unsigned code = HighWord(record.wParam);
  switch (LowWord(record.wParam)) {
    case kNextButton:
      Next();
      return 1;
    case kBackButton:
      Back();
      return 1;
    case kBrowseButton:
      Browse();
      return 1;
    case kSourceList:
      if (code == LBN_SELCHANGE) SelectRow(sources.Selected());
      return 1;
    case kTargetList:
      if (code == LBN_SELCHANGE) SelectRow(targets.Selected());
      return 1;
    case kFieldBox:
      if (code == CBN_SELCHANGE) MapSelected();
      return 1;
    case kDefaultMapButton:
      UseMap(core::DefaultImportMap(columns));
      return 1;
    case kClearMapButton:
      UseMap(core::PositionalImportMap(columns.size()));
      return 1;
    default:
      return ZarfDialog::OnCommand(record);
  }
}

// ---- Pages ----

void ImportWizard::ShowPage(int newPage) {
  page = newPage;
  for (const int id : {kFilePage, kFormatPage, kMapPage}) DialogItem(*this, id).SetVisible(id == page);
  backButton.Enable(page != kFilePage);
  nextButton.SetText(page == kMapPage ? "&Finish" : "&Next");
  if (page == kFilePage) file.Focus();
  if (page == kFormatPage) hasNames.Focus();
  if (page == kMapPage) sources.Focus();
}

void ImportWizard::Back() {
  if (page != kFilePage) ShowPage(page - 1);
}

void ImportWizard::Next() {
  switch (page) {
    case kFilePage:
      if (!LeaveFilePage()) break;
      // Such a file has no columns to ask for.
      if (core::IsIcalName(path)) {
        EndDialog(1);
      } else {
        ShowPage(kFormatPage);
      }
      break;
    case kFormatPage:
      if (LeaveFormatPage()) ShowPage(kMapPage);
      break;
    default:
      if (LeaveMapPage()) EndDialog(1);
      break;
  }
}

// ---- The file ----

void ImportWizard::Browse() {
  std::string chosen;
  if (FileDialog(kFileDialogOpen, kExchangeFilter, kExchangeExtension, hwnd, chosen, kInWorksFolder))
    file.SetPath(chosen);
  file.Focus();
}

bool ImportWizard::LeaveFilePage() {
  path = file.Path();
  BeginWaitCursor();
  const std::string problem = reader.Open(path, &target);
  EndWaitCursor();
  if (!problem.empty()) {
    shownPath.clear();
    ShowInfo(this, problem);
    file.Focus();
    return false;
  }
  ShowContents();
  // Who comes back from the second page finds there what he chose, unless he named another file.
  if (shownPath != path) {
    ShowFormat();
    columns.clear();
  }
  shownPath = path;
  return true;
}

// ---- Its format ----

void ImportWizard::ShowContents() {
  bool isWhole = true;
  BeginWaitCursor();
  contents.SetText(BeginningOf(path, isWhole));
  EndWaitCursor();
  partLabel.SetVisible(!isWhole);
}

void ImportWizard::ShowFormat() {
  const core::ImportFormat& format = reader.Format();
  for (const int id : {kYesRadio, kNoRadio}) CheckDlgButton(hwnd, id, (id == kYesRadio) == format.header);
  for (const int id : {kTabRadio, kCommaRadio})
    CheckDlgButton(hwnd, id, (id == kTabRadio) == (format.separator == '\t'));
  quote.Select(format.quote == '\0' ? kNoQuoteLine : kQuoteLine);
}

core::ImportFormat ImportWizard::ChosenFormat() const {
  return {.header = hasNames.Checked(),
          .separator = byTab.Checked() ? '\t' : ',',
          .quote = quote.Selected() == kQuoteLine ? '"' : '\0'};
}

bool ImportWizard::LeaveFormatPage() {
  const core::ImportFormat format = ChosenFormat();
  reader.SetFormat(format);
  std::vector<core::ImportText> first;
  if (reader.ReadLine(first) == core::ImportLine::kFailed) {
    ShowInfo(this, "The import file could not be read.");
    return false;
  }
  for (const int id : {kDefaultMapButton, kClearMapButton}) DialogItem(*this, id).SetVisible(format.header);
  if (columns.size() == first.size() && IsSame(format, mapped)) return true;
  mapped = format;
  columns = first;
  SendItemMessage(kSourceList, LB_RESETCONTENT, 0, 0);
  for (const core::ImportText& column : columns) sources.Add(column.text);
  UseMap(core::PositionalImportMap(columns.size()));
  SelectRow(0);
  return true;
}

// ---- Its columns ----

void ImportWizard::UseMap(const core::ImportMap& newMap) {
  map = newMap;
  const int row = sources.Selected();
  SendItemMessage(kTargetList, LB_RESETCONTENT, 0, 0);
  for (const int column : map) targets.Add(NameOf(column));
  SelectRow(row);
}

void ImportWizard::SelectRow(int row) {
  if (row < 0 || row >= static_cast<int>(map.size())) return;
  sources.Select(row);
  targets.Select(row);
  const int mappedTo = map[static_cast<std::size_t>(row)];
  field.Select(mappedTo == core::kIgnoredColumn ? static_cast<int>(core::kExchangeFields.size()) : mappedTo);
}

void ImportWizard::MapSelected() {
  const int row = sources.Selected();
  if (row < 0 || row >= static_cast<int>(map.size())) return;
  const int chosen = field.Selected();
  core::ImportMap changed = map;
  changed[static_cast<std::size_t>(row)] =
      chosen < static_cast<int>(core::kExchangeFields.size()) ? chosen : core::kIgnoredColumn;
  UseMap(changed);
}

bool ImportWizard::LeaveMapPage() {
  if (!core::MapsAnything(map)) {
    ShowInfo(this, kNothingMapped);
    return false;
  }
  reader.SetFormat(mapped);
  return true;
}
