// A dialog as an object. Modal ones live on the stack for as long as they are open; Enter ends them with 1
// and Escape with 0 unless OnCommand is overridden. Its controls are the objects of dialog_items.h, as
// members.
#pragma once

#include <vector>

#include "framework/zarf_wnd.h"
#include "platform/desktop/dialog.h"

class ZarfDialog : public ZarfWnd {
 public:
  // Opens the dialog of a template over `owner` (may be null). Modal unless a class replaces it: answers the
  // number the dialog ended with, -1 when the template is missing.
  virtual int Open(ZarfWnd* owner, int templateId);
  // Puts the dialog where it opens, before OnInitDialog: over the middle of its owner.
  virtual void Place();
  // For OnInitDialog: outlines grow from the dialog's middle to its edges.
  virtual void ZoomOpen();
  virtual LRESULT OnInitDialog(const MessageRecord& record);  // 1
  virtual void EndDialog(int result);
  virtual LRESULT SendItemMessage(int id, UINT message, WPARAM wParam, LPARAM lParam);
  virtual void SetItemText(int id, const char* text);

  LRESULT WindowProc(const MessageRecord& record) override;
  // 0: not handled, the desktop layer does what dialogs do.
  LRESULT DefaultProc(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

  int DoModal(ZarfWnd* owner, int templateId);
  bool CreateModeless(ZarfWnd* owner, int templateId);

 protected:
  // For OnInitDialog: from now on OK can be had only while an edit has a text, and Enter does nothing without
  // one. Of several edits each must have one.
  void OkNeedsText(int editId);

 private:
  bool HasNeededTexts() const;
  LRESULT Command(const MessageRecord& record);
  static LRESULT SharedDialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

  std::vector<int> neededTexts;  // of the edits that OK needs
};
