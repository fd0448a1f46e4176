// The dialog "With": the description of an appointment from a few ready beginnings and the name of somebody
// in another program's file of contacts, which is only read.
#pragma once

#include <string>

#include "framework/dialog_items.h"

class WithDialog : public ZarfDialog {
 public:
  enum ControlId { kDescriptionBox = 99, kContactList = 100, kBrowseButton = 102, kPathEdit = 110 };

  // True for OK.
  [[nodiscard]] bool Run(ZarfWnd* owner);
  // What was chosen or typed then.
  const std::string& Description() const { return description; }

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnAfterCreate(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  // Lists the names in a file. False, and the user was told why, when it cannot be read.
  bool Load(const std::string& path);
  // Proposes descriptions with the selected contact, or with nobody.
  void ShowProposals();
  void Browse();

  std::string description;
  ComboItem text{*this, kDescriptionBox};
  ListItem contacts{*this, kContactList};
  TextItem shownPath{*this, kPathEdit};
};
