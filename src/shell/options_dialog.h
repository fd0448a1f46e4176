// The dialog "General Options": the switches and the refresh time that all programs of the product share.
#pragma once

#include "framework/dialog_items.h"

class OptionsDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId { kSoundBox = 100, kAnimationBox, kSplashBox, kRefreshList, kTrayBox };

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void Save();

  ComboItem refresh{*this, kRefreshList};
  CheckItem tray{*this, kTrayBox};
};

// Opens the dialog over the main frame. After OK the settings are written and in force in this copy, and
// every other running copy is told.
void ShowOptionsDialog(ZarfWnd& frame);
