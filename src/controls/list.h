// A grid of cells, drawn by its owner, with a selection, keys, wheel and drags. A program rarely uses it by
// itself: a list view puts a scroll bar beside it and draws the cells.
//
// It posts its parent WM_COMMAND with one of the codes below as wParam.
#pragma once

#include <string>

#include "controls/list_geometry.h"
#include "framework/owner_drawn.h"

// The codes and their lParam. A list posts 20 to 23 to its list view, and a list view posts 21 to 25 to its
// parent in the high word of WM_COMMAND.
constexpr unsigned kListFirstRow = 20;     // the first row, after the user changed it
constexpr unsigned kListSelected = 21;     // the cell selected by the left button
constexpr unsigned kListDoubleClick = 22;  // the cell, -1 for none
constexpr unsigned kListRightClick = 23;   // the cell, -1 for none
constexpr unsigned kListFileChanged = 24;  // a ListRebuild
constexpr unsigned kListOwn = 25;          // free for the kinds of lists

// What kListFileChanged tells: that a list is about to be rebuilt from its file, or was.
enum ListRebuild : LPARAM {
  kRebuiltByProgram = 0,
  kRebuildByProgram = 1,  // about to
  kRebuiltByWatch = 2,
  kRebuildByWatch = 3,  // about to
};

// Who draws a list's cells and takes its cell events. Points and rectangles are in the list's client pixels.
class ListOwner {
 public:
  // Draws a cell; its background is filled already with `colour`. `selected` is the selected cell. Index -1,
  // with the whole client area, is the look of an empty list.
  virtual void DrawListCell(HDC hdc, COLORREF colour, int index, int selected, const RECT& rect) = 0;
  virtual void ListMouseMove(POINT point, int index, const RECT& rect) = 0;
  virtual void ListLButtonDown(POINT point, int index, const RECT& rect) = 0;
  virtual void ListLButtonUp(POINT point, int index, const RECT& rect) = 0;
  // A key moves the selection.
  virtual bool SelectItem(int index) = 0;
  // What a cell says, for those who do not see it (code page 1252).
  virtual std::string ListCellText(int index) = 0;
  // A key (VK_...) that is none of the list's own; true when it was of use.
  virtual bool ListKey(unsigned key) = 0;
  // A character that was typed (code page 1252).
  virtual void ListCharacter(char typed) = 0;

 protected:
  ~ListOwner() = default;
};

struct ListSetup {
  int commandId = 0;
  double rows = 0;
  int rowHeight = 16;  // pixels
  int columns = 1;
  COLORREF oddCell = RGB(255, 255, 255);
  COLORREF evenCell = RGB(255, 255, 255);
  bool dragEnabled = false;
};

class ZarfWndList : public OwnerDrawn {
 public:
  // `cellOwner` must outlive the list.
  ZarfWndList(ListOwner& cellOwner, const ListSetup& setup);

  double Rows() const { return setup.rows; }
  int FirstRow() const { return firstRow; }
  int Selected() const { return selected; }
  // Whether the selection is to be drawn as in the window that has the keyboard.
  bool HasFocusMark() const { return focusMark; }
  bool Dragging() const { return Tracking(); }
  // As the list stands in its window.
  ListLayout Layout() const;

  // Takes a new row count: nothing is selected then, and the first row stays where it can.
  void SetRows(double rows);
  // False, and nothing changes, unless 0 <= row < rows and it is another row.
  bool SetFirstRow(int row);
  // Another height of all rows, in pixels. False when it is the same.
  bool SetRowHeight(int rowHeight);
  // Selects a cell, -1 for none, and scrolls it into sight. False, and nothing changes, when there is no such
  // cell.
  bool SelectItem(int index);

  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnClose(const MessageRecord& record) override;
  LRESULT OnEraseBkgnd(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  LRESULT OnMouseMove(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnLButtonUp(const MessageRecord& record) override;
  LRESULT OnLButtonDblClk(const MessageRecord& record) override;
  LRESULT OnRButtonUp(const MessageRecord& record) override;
  LRESULT OnMouseWheel(const MessageRecord& record) override;
  LRESULT OnKeyDown(const MessageRecord& record) override;
  LRESULT OnChar(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  int ItemAt(POINT point) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  const char* CursorAt(POINT point) override;
  void OnTrackingEnd() override;

 private:
  ListLayout LayoutIn(const RECT& client) const;
  bool Select(int index);
  void InvalidateCell(int index);
  void Notify(unsigned code, int value);
  void Drop(const MessageRecord& record);

  ListOwner& owner;
  ListSetup setup;
  int firstRow = 0;
  int selected = -1;
  bool focusMark = false;
  bool dragArmed = false;
};
