// The wizard "Import": it asks for a file, shows how that is written, and asks which of its columns become
// which fields of an appointment. It lives on the stack for one Run and adds nothing itself.
#pragma once

#include <string>
#include <vector>

#include "core/exchange/import_file.h"
#include "framework/dialog_items.h"

class ImportWizard : public ZarfDialog {
 public:
  // The numbers of its controls. Each page is one as well, with its controls inside.
  enum ControlId {
    kNextButton = IDOK,
    kBackButton = 3,
    kFilePage = 10,
    kFormatPage,
    kMapPage,
    kFileEdit = 98,
    kBrowseButton,
    kContentsEdit,
    kYesRadio,
    kNoRadio,
    kCommaRadio,
    kTabRadio,
    kQuoteBox,
    kPartLabel,
    kSourceList = 200,
    kTargetList,
    kFieldBox,
    kDefaultMapButton,
    kClearMapButton,
  };

  // What is read goes into `calendar`, which must outlive the wizard. `lastPath` is shown at first.
  ImportWizard(const core::RecordFile& calendar, std::string lastPath)
      : target(calendar), path(std::move(lastPath)) {}

  // True for "Finish", and for "Next" with an iCalendar file, of which nothing is to be asked.
  bool Run(ZarfWnd* owner);
  // What was chosen then: the file, and, unless it is an iCalendar file, its reader at the first line and in
  // its format, and the map of its columns.
  const std::string& Path() const { return path; }
  core::ImportReader& Reader() { return reader; }
  const core::ImportMap& Map() const { return map; }

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void ShowPage(int page);
  void Back();
  void Next();
  void Browse();

  // What a page does when its "Next" is pressed; false when the user is to stay there.
  [[nodiscard]] bool LeaveFilePage();
  [[nodiscard]] bool LeaveFormatPage();
  [[nodiscard]] bool LeaveMapPage();
  void ShowContents();
  void ShowFormat();
  core::ImportFormat ChosenFormat() const;
  void UseMap(const core::ImportMap& newMap);
  void SelectRow(int row);
  void MapSelected();

  const core::RecordFile& target;
  std::string path;       // in the file system's encoding
  std::string shownPath;  // whose format is on the second page; empty for none
  core::ImportReader reader;
  core::ImportFormat mapped;              // in which `columns` were read
  std::vector<core::ImportText> columns;  // the first line
  core::ImportMap map;
  int page = kFilePage;

  TextItem file{*this, kFileEdit};
  TextItem contents{*this, kContentsEdit};
  CheckItem hasNames{*this, kYesRadio};
  CheckItem byTab{*this, kTabRadio};
  ComboItem quote{*this, kQuoteBox};
  DialogItem partLabel{*this, kPartLabel};
  ListItem sources{*this, kSourceList};
  ListItem targets{*this, kTargetList};
  ComboItem field{*this, kFieldBox};
  TextItem nextButton{*this, kNextButton};
  DialogItem backButton{*this, kBackButton};
};
