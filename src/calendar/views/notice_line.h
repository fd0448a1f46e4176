// A line of text on the panel's ground that tells the user something about the view above it. It shows itself
// while it has something to say.
#pragma once

#include <string>

#include "framework/owner_drawn.h"

class NoticeLine : public OwnerDrawn {
 public:
  // In code page 1252; empty takes the line away. True when it came or went: what is around it has to be
  // placed anew.
  bool Say(const std::string& text);
  bool IsShown() const { return !notice.empty(); }

  void Paint(HDC hdc, const RECT& client) const override;
  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;

 private:
  std::string notice;
};
