// The dialog "General Options": the switches and the refresh time that all programs of the product share.
#pragma once

#include "framework/zarf_dialog.h"

class OptionsDialog : public ZarfDialog {
 public:
  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void Save();
};

// Opens the dialog over `owner` (may be null). After OK the settings are written and in force in this copy,
// and every other running copy is told.
void ShowOptionsDialog(ZarfWnd* owner);
