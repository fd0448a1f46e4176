// Keeps the selection of a list, and the rows scrolled to, while another user's change rebuilds it: nothing
// is to be taken away under the hands of who works on it.
#pragma once

#include "controls/list_view.h"

class KeptSelection {
 public:
  // To be given the value of each kListFileChanged of the list.
  void OnListChanged(ZarfWndListView& list, LPARAM rebuild) {
    if (rebuild == kRebuildByWatch) {
      key = list.KeyAt(list.SelectedItem());
    } else if (rebuild == kRebuiltByWatch && !key.IsNone() && list.SelectedItem() < 0) {
      const int firstRow = list.FirstRow();
      list.SelectRecord(key.id);
      list.SetFirstRow(firstRow);
      key = {};
    }
  }

 private:
  core::RecordKey key;
};
