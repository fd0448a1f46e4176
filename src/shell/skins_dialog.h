// The dialog that chooses a skin from all that are in the skins folder when it opens.
#pragma once

#include <vector>

#include "framework/dialog_items.h"
#include "shell/skins.h"

class SkinsDialog : public ZarfDialog {
 public:
  enum ControlId { kSkinList = 100 };

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  ListItem list{*this, kSkinList};
  std::vector<SkinListEntry> skins;  // line by line as in the list box
};

// Runs the dialog over `owner` (may be null). A choice becomes the current skin, and every running copy is
// told, this one included.
void ShowSkinsDialog(ZarfWnd* owner);
