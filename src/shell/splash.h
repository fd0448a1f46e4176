// The picture shown for a moment while the program starts.
#pragma once

#include <memory>

#include "framework/zarf_dialog.h"
#include "platform/desktop/bitmap.h"

class SplashDialog : public ZarfDialog {
 public:
  LRESULT OnInitDialog(const MessageRecord& record) override;
  void OnPaint(HDC hdc, PAINTSTRUCT paint) override;
  LRESULT OnTimer(const MessageRecord& record) override;

 private:
  std::unique_ptr<Bitmap> picture;
};

// Shows it in the middle of the desktop and returns when it is gone.
void ShowSplash();
