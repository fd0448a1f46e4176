// A dialog that drops down below a button with one thing to pick from, and "ok" and "cancel" below that. It
// lives on the stack of its caller while it runs.
#pragma once

#include <optional>

#include "framework/zarf_dialog.h"

class PickerDialog : public ZarfDialog {
 public:
  // Where the dialog opens: its top left corner, in screen pixels. It is kept on the desktop.
  void SetPosition(POINT topLeft) { position = topLeft; }
  // Opens with a sound and rolling down.
  void SetAnimate(bool on) { animate = on; }
  // Opens animated below a control of another dialog.
  void OpenBelow(HWND control);

  void Place() override;
  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnAfterCreate(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 protected:
  // What is picked from: the window of the derived class, which fills the dialog above its buttons with a
  // margin around it, and takes the keyboard when it was made.
  virtual ZarfWnd& Content() = 0;
  virtual void FocusContent() = 0;
  virtual int Margin() const = 0;

 private:
  void PlaceContent();

  std::optional<POINT> position;
  bool animate = false;
};
