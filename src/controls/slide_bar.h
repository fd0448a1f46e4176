// A vertical slider: a thumb in a track, dragged or called by a press in the track. It posts its parent
// WM_COMMAND with its id and the new position when the user changes the position.
#pragma once

#include <optional>

#include "framework/owner_drawn.h"

class ZarfSlideBar : public OwnerDrawn {
 public:
  // `count` positions from 0 on; below 1 the bar is empty and takes no mouse.
  ZarfSlideBar(int commandId, COLORREF base, double count);

  int Position() const { return position; }
  double Count() const { return count; }
  bool Dragging() const { return Tracking(); }

  // False unless 0 <= newPosition < count. Redraws when it is a different one.
  bool SetPosition(int newPosition);
  // Brings the position below the new count. True when something changed.
  bool SetCount(double newCount);
  // Colours in place of those made from the base colour: the ground of the track, the thumb, the thumb's
  // outline, and the lines on track and thumb. kNoColour for `track`: as before.
  void SetColours(COLORREF face, COLORREF track, COLORREF frame, COLORREF thumbEdge);

  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnMouseMove(const MessageRecord& record) override;
  LRESULT OnLButtonUp(const MessageRecord& record) override;
  // Arrows, pages of ten, Home and End. The owner decides whether it is a tab stop.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  void OnTrackingEnd() override;

 private:
  void Follow(int y);
  void MoveTo(int wanted);

  const int commandId;
  const COLORREF base;
  int position = 0;
  double count;
  std::optional<int> mouseY;  // where the thumb is dragged to
  COLORREF faceColour = kNoColour;
  COLORREF trackColour = kNoColour;
  COLORREF frameColour = kNoColour;
  COLORREF edgeColour = kNoColour;
};
