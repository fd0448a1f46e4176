// A drop-down chooser: a face with an arrow and the current choice, and a popup menu of up to 100 items
// behind it. The choice of an item makes it current and posts the parent WM_COMMAND with the item's command
// and, as lParam, a pointer to the caption (const char*, valid until the next choice or the end of the
// control).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "framework/owner_drawn.h"
#include "platform/desktop/bitmap.h"

class TFlyMenu : public OwnerDrawn {
 public:
  static constexpr std::size_t kMaxItems = 100;
  static constexpr std::size_t kCaptionSize = 255;  // with the zero byte

  TFlyMenu(COLORREF background, COLORREF text);

  // Takes all items away; the current caption stays.
  void ClearItems();
  // Items at the end: a text of the string table, a text of the user's (cut to 254 bytes), a separator. False
  // when there are 100.
  bool AddItem(int stringId, int commandId);
  bool AddItemText(const char* text, int commandId);
  bool AddSeparator();
  std::size_t ItemCount() const { return items.size(); }

  // Makes an item current without telling anybody. False when there is no such item or it is current already.
  bool SetCurrent(int commandId);
  const char* Caption() const { return caption; }
  // Whether the menu is open.
  bool Pressed() const { return pressed; }

  // The part of the client area that opens the menu: its left 10 pixels, where the arrow is, unless a derived
  // class says otherwise.
  virtual RECT ActiveArea() const;

  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  // Space, Up, Down and F4 open the menu.
  LRESULT OnKeyDown(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  const char* CursorAt(POINT point) override;

 private:
  struct Item {
    int stringId;  // -1: `text` is the caption
    int commandId;
    std::string text;
    bool separator;
  };

  bool Add(const Item& item);
  void OpenMenu();
  const Item* FindItem(int commandId) const;
  bool TakeCaption(const Item& item);
  HMENU BuildMenu() const;

  std::vector<Item> items;
  int current = 0;
  bool hasCurrent = false;
  char caption[kCaptionSize] = "";
  const COLORREF background;
  const COLORREF textColour;
  std::unique_ptr<Bitmap> arrow;  // from the creation of the window on
  bool pressed = false;
};
