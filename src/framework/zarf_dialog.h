// A dialog as an object. Modal ones live on the stack for as long as they are open; Enter ends them with 1
// and Escape with 0 unless OnCommand is overridden.
#pragma once

#include "framework/zarf_wnd.h"
#include "platform/desktop/dialog.h"

class ZarfDialog : public ZarfWnd {
 public:
  // Opens the dialog of a template over `owner` (may be null). Modal unless a class replaces it: answers the
  // number the dialog ended with, -1 when the template is missing.
  virtual int Open(ZarfWnd* owner, int templateId);
  // For OnInitDialog, once the dialog has its place: outlines grow from its middle to its edges.
  virtual void ZoomOpen();
  virtual LRESULT OnInitDialog(const MessageRecord& record);   // 1
  virtual LRESULT OnMeasureItem(const MessageRecord& record);  // 1
  virtual LRESULT OnDrawItem(const MessageRecord& record);     // 1
  virtual void EndDialog(int result);
  virtual LRESULT SendItemMessage(int id, UINT message, WPARAM wParam, LPARAM lParam);
  virtual void SetItemText(int id, const char* text);

  LRESULT WindowProc(const MessageRecord& record) override;
  // 0: not handled, the desktop layer does what dialogs do.
  LRESULT DefaultProc(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

  int DoModal(ZarfWnd* owner, int templateId);
  bool CreateModeless(ZarfWnd* owner, int templateId);

 private:
  static LRESULT SharedDialogProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
};
