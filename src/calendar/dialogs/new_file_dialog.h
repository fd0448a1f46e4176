// The dialog in which a calendar is made: it asks for a name and a folder and stays until the file is there.
#pragma once

#include <string>

#include "framework/dialog_items.h"

class NewFileDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId { kNameEdit = 100, kFolderEdit, kBrowseButton, kNoteLine, kExamplesBox };

  // `why` is a line (UTF-8) above the fields that says why the user is asked; empty for none.
  explicit NewFileDialog(std::string why = "") : noteText(std::move(why)) {}

  // 1 when the user made a calendar, which is then at Path(); 0 for Cancel.
  int Run(ZarfWnd* owner);
  const std::string& Path() const { return path; }

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void OnBrowse();
  void OnOk();

  const std::string noteText;
  std::string path;

  TextItem name{*this, kNameEdit};
  TextItem folder{*this, kFolderEdit};
  TextItem note{*this, kNoteLine};
  CheckItem examples{*this, kExamplesBox};
};
