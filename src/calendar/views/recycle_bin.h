// The recycle bin of the calendar panel: a picture that shows whether an appointment can be brought back, and
// takes appointments that are dragged onto it. A click brings the last one back.
//
// What it cannot do itself it asks of its parent, by sending WM_COMMAND with its id and the command as
// lParam: ID_ITEM_DELETE for the appointment that was dropped, answered 1 when that is gone, ID_UNDO_DELETE,
// and kBinIsEmpty, to be told to the user, when there is nothing to bring back.
#pragma once

#include <memory>

#include "core/calendar/calendar_session.h"
#include "framework/owner_drawn.h"
#include "platform/desktop/bitmap.h"

constexpr int kBinId = 107;
constexpr unsigned kBinIsEmpty = 0;
constexpr const char* kBinIsEmptyText = "Bin is empty.";

// Where the picture, as high as this, takes clicks and drops: in the middle of the client area, on its
// bottom. Drops are taken from a little further left.
constexpr RECT BinClickZone(const RECT& client, int pictureHeight) {
  const int centre = client.left + (client.right - client.left) / 2;
  return {centre - 20, client.bottom - pictureHeight, centre + 20, client.bottom};
}
constexpr RECT BinDropZone(const RECT& client, int pictureHeight) {
  const RECT click = BinClickZone(client, pictureHeight);
  return {click.left - 5, click.top, click.right, click.bottom};
}

class RecycleBinWnd : public OwnerDrawn, private core::SessionListener {
 public:
  // `calendarSession` must outlive the bin.
  explicit RecycleBinWnd(core::CalendarSession& calendarSession);
  ~RecycleBinWnd() override;

  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnMouseMove(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnRButtonDown(const MessageRecord& record) override;
  // Space and Enter bring back, the menu key opens the menu.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  bool KeepsKey(unsigned key) const override { return key == VK_RETURN; }
  LRESULT OnCommand(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  const char* CursorAt(POINT point) override;

 private:
  void OnSessionChange(core::SessionChange change) override;
  const Bitmap* Picture() const;
  bool Over(POINT point) const;
  // What a click would do, in words.
  std::string Purpose() const;
  // Has the parent bring back, or tell that there is nothing.
  void Undo();
  void ShowMenu(POINT screenPoint);
  LRESULT TakeDrop(unsigned command, POINT screenPoint);

  core::CalendarSession& session;
  LazyBitmap emptyPicture;
  LazyBitmap fullPicture;
};
