// A list with a scroll bar beside it. Concrete lists derive from it and draw the cells; those that show a
// data file are given the file and a record list and then draw their cells from the records. While others
// change the file, the list view rebuilds the record list by itself.
//
// It posts its parent WM_COMMAND with its id in the low word and a code of list.h in the high word. Code 24
// tells of changes of the file and is sent before a rebuild (lParam 3, or 1 when the program asked for it)
// and posted after it (2 or 0). A rebuild takes the selection away: a parent that wants to keep it remembers
// the selected record at the first and selects it again at the second. It must not take the file or the
// record list away at the first.
//
// Its window's title is what the list is called for those who do not see it.
#pragma once

#include <string>

#include "controls/list.h"
#include "controls/scroll_bar.h"
#include "core/record_query.h"

struct ListViewSetup {
  int commandId = 0;
  int itemCount = 0;
  int columns = 1;
  int rowHeight = 16;  // pixels
  bool scrollBarOnLeft = false;
  bool dragEnabled = false;
  COLORREF oddCell = RGB(255, 255, 255);
  COLORREF evenCell = RGB(255, 255, 255);
  COLORREF scrollBar = RGB(212, 208, 200);
};

enum class ListRefresh { kByProgram, kByTimer };

class ZarfWndListView : public ZarfWnd, private ListOwner {
 public:
  explicit ZarfWndListView(const ListViewSetup& setup);
  ~ZarfWndListView() override;

  // Shows the records of a list, which the caller has run and sorted; both stay the caller's and must stay
  // for as long as they are set. Null for both: an empty list that shows no file.
  void SetFile(core::RecordFile* newFile, core::RecordQuery* newRecords);
  // Takes another number of items; nothing is selected then.
  void SetItemCount(int count);
  int ItemCount() const { return cellList.Layout().Cells(); }

  // Selects an item, -1 for none, and scrolls it into sight. False, and nothing changes, when there is no
  // such item.
  bool SelectItem(int index) override;
  int SelectedItem() const { return cellList.Selected(); }
  // Selects the item that shows a record, told by its id. `record` begins with a core::RecordHeader. False
  // when the list does not have it.
  bool SelectRecord(const void* record);
  // The offset of an item's slot in the file; -1 for none.
  std::int32_t RecordOffset(int index) const;

  // Scrolls; the row must be below the row count.
  void SetFirstRow(int row);
  int FirstRow() const { return cellList.FirstRow(); }
  bool SetRowHeight(int rowHeight) { return cellList.SetRowHeight(rowHeight); }
  void FocusList();
  // Where the menu of an item belongs when no mouse asked for it, in screen pixels: under the item's left
  // end, or in the list's corner for none (-1) and for one out of sight.
  POINT MenuPoint(int index) const;
  // Whether the selected cell is to be drawn as in the window that has the keyboard.
  bool HasFocusMark() const { return cellList.HasFocusMark(); }

  // Rebuilds the list when the file was changed since it was built. True when it was rebuilt.
  bool RefreshFromFile(ListRefresh cause);
  // Starts the timer that looks for changes, with the period of the settings.
  void ArmRefreshTimer();

  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

  // For derived classes: the cells of a list without a file. `colour` is the cell's background, already
  // filled; state 1 is the selected cell. Index -1 with the whole area is the look of an empty list.
  virtual void DrawCell(HDC hdc, COLORREF colour, int index, int state, const RECT& rect);
  virtual void OnCellMouseMove(POINT point, int index, const RECT& rect);
  virtual void OnCellLButtonDown(POINT point, int index, const RECT& rect);
  virtual void OnCellLButtonUp(POINT point, int index, const RECT& rect);
  // The same for a list with a file. The record at the index may have been deleted by somebody else.
  virtual void DrawRecordCell(core::RecordFile& file, core::RecordQuery& records, HDC hdc, COLORREF colour,
                              int index, int state, const RECT& rect);
  virtual void OnRecordCellMouseMove(core::RecordFile& file, core::RecordQuery& records, POINT point,
                                     int index, const RECT& rect);
  virtual void OnRecordCellLButtonDown(core::RecordFile& file, core::RecordQuery& records, POINT point,
                                       int index, const RECT& rect);
  virtual void OnRecordCellLButtonUp(core::RecordFile& file, core::RecordQuery& records, POINT point,
                                     int index, const RECT& rect);
  // What a cell says, read out to those who do not see it (code page 1252). Empty by default.
  virtual std::string CellText(int index);
  virtual std::string RecordCellText(core::RecordFile& file, core::RecordQuery& records, int index);

 private:
  void DrawListCell(HDC hdc, COLORREF colour, int index, int selected, const RECT& rect) override;
  void ListMouseMove(POINT point, int index, const RECT& rect) override;
  void ListLButtonDown(POINT point, int index, const RECT& rect) override;
  void ListLButtonUp(POINT point, int index, const RECT& rect) override;
  std::string ListCellText(int index) override;
  bool ShowsFile() const { return shownFile != nullptr && shownRecords != nullptr; }
  LPARAM NoticeValue(ListRefresh cause, bool before) const;

  const ListViewSetup viewSetup;
  ZarfClassWndScrollBar scrollBar;
  ZarfWndList cellList;
  core::RecordFile* shownFile = nullptr;
  core::RecordQuery* shownRecords = nullptr;
};
