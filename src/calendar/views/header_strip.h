// A strip with a caption above a list.
#pragma once

#include <string>

#include "framework/owner_drawn.h"

constexpr int kHeaderStripHeight = 18;

class HeaderStrip : public OwnerDrawn {
 public:
  explicit HeaderStrip(std::string newCaption) : caption(std::move(newCaption)) {}

  void Paint(HDC hdc, const RECT& client) const override;
  int PrepareClass(WNDCLASS* windowClass) override;

 private:
  const std::string caption;
};
