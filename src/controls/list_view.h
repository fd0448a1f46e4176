// A list with a scroll bar beside it. Concrete lists derive from it and draw the cells; those that show a
// data file are given the file and a record list and then draw their cells from the records. While others
// change the file, the list view rebuilds the record list by itself.
//
// It posts its parent WM_COMMAND with its id in the low word and a code of list.h in the high word.
// kListFileChanged is sent before a rebuild and posted after it. A rebuild takes the selection away: a parent
// that wants to keep it remembers the selected record at the first and selects it again at the second. It
// must not take the file or the record list away at the first.
//
// Its window's title is what the list is called for those who do not see it.
#pragma once

#include <cstdint>
#include <string>

#include "controls/list.h"
#include "controls/scroll_bar.h"
#include "controls/watch_timer.h"
#include "core/store/file_watch.h"
#include "core/store/record_list.h"

struct ListViewSetup {
  int commandId = 0;
  int itemCount = 0;
  int columns = 1;
  int rowHeight = 16;  // pixels
  bool scrollBarOnLeft = false;
  bool dragEnabled = false;
  bool findsByLetter = false;  // a letter typed selects the next item whose text begins with it
  COLORREF oddCell = RGB(255, 255, 255);
  COLORREF evenCell = RGB(255, 255, 255);
  COLORREF scrollBar = RGB(212, 208, 200);
};

enum class ListRefresh { kByProgram, kByWatch };

// List views that the file watch keeps up to date; what further ones show changes only when they are told.
constexpr int kMostWatchingLists = 100;

class ZarfWndListView : public ZarfWnd, private ListOwner, private core::FileWatcher {
 public:
  explicit ZarfWndListView(const ListViewSetup& setup);
  ~ZarfWndListView() override;

  // Shows the records of a list, which the caller has run and sorted; both stay the caller's and must stay
  // for as long as they are set. It is shown from its top. Null for both: an empty list that shows no file.
  void SetFile(core::RecordFile* newFile, core::RecordList* newRecords);
  // Takes another number of items; nothing is selected then.
  void SetItemCount(int count);
  int ItemCount() const { return cellList.Layout().Cells(); }

  // Selects an item, -1 for none, and scrolls it into sight. False, and nothing changes, when there is no
  // such item.
  bool SelectItem(int index) override;
  int SelectedItem() const { return cellList.Selected(); }
  // Selects the item that shows a record. False when the list does not have it.
  bool SelectRecord(std::uint64_t recordId);
  // The key of an item's record, as it was when the list was built.
  core::RecordKey KeyAt(int index) const;

  // Scrolls; the row must be below the row count.
  void SetFirstRow(int row);
  int FirstRow() const { return cellList.FirstRow(); }
  bool SetRowHeight(int rowHeight) { return cellList.SetRowHeight(rowHeight); }
  void FocusList();
  // For items that look different by now, while the list itself is the same.
  void RedrawItems() { cellList.Invalidate(nullptr, 0); }
  // Where the menu of an item belongs when no mouse asked for it, in screen pixels: under the item's left
  // end, or in the list's corner for none (-1) and for one out of sight.
  POINT MenuPoint(int index) const;
  // Whether the selected cell is to be drawn as in the window that has the keyboard.
  bool HasFocusMark() const { return cellList.HasFocusMark(); }

  // Rebuilds the list when the file was changed since it was built. True when it was rebuilt.
  bool RefreshFromFile(ListRefresh cause);

  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

  // For derived classes: the cells of a list without a file. `colour` is the cell's background, already
  // filled; state 1 is the selected cell. Index -1 with the whole area is the look of an empty list.
  virtual void DrawCell(HDC hdc, COLORREF colour, int index, int state, const RECT& rect);
  virtual void OnCellMouseMove(POINT point, int index, const RECT& rect);
  virtual void OnCellLButtonDown(POINT point, int index, const RECT& rect);
  virtual void OnCellLButtonUp(POINT point, int index, const RECT& rect);
  // The same for a list with a file. The record at the index may have been deleted by somebody else.
  virtual void DrawRecordCell(core::RecordFile& file, core::RecordList& records, HDC hdc, COLORREF colour,
                              int index, int state, const RECT& rect);
  virtual void OnRecordCellMouseMove(core::RecordFile& file, core::RecordList& records, POINT point,
                                     int index, const RECT& rect);
  virtual void OnRecordCellLButtonDown(core::RecordFile& file, core::RecordList& records, POINT point,
                                       int index, const RECT& rect);
  virtual void OnRecordCellLButtonUp(core::RecordFile& file, core::RecordList& records, POINT point,
                                     int index, const RECT& rect);
  // What a cell says, read out to those who do not see it (code page 1252). Empty by default.
  virtual std::string CellText(int index);
  virtual std::string RecordCellText(core::RecordFile& file, core::RecordList& records, int index);
  // A key (VK_...) that no list uses; true, when it is one of this list's own.
  virtual bool OnListKey(unsigned key);

 private:
  void DrawListCell(HDC hdc, COLORREF colour, int index, int selected, const RECT& rect) override;
  void ListMouseMove(POINT point, int index, const RECT& rect) override;
  void ListLButtonDown(POINT point, int index, const RECT& rect) override;
  void ListLButtonUp(POINT point, int index, const RECT& rect) override;
  std::string ListCellText(int index) override;
  bool ListKey(unsigned key) override { return OnListKey(key); }
  void ListCharacter(char typed) override;
  const core::RecordFile* WatchedFile() const override { return ShowsFile() ? shownFile : nullptr; }
  void OnLook(const core::FileLook& look) override;
  bool ShowsFile() const { return shownFile != nullptr && shownRecords != nullptr; }

  const ListViewSetup viewSetup;
  ZarfClassWndScrollBar scrollBar;
  ZarfWndList cellList;
  core::RecordFile* shownFile = nullptr;
  core::RecordList* shownRecords = nullptr;
  bool watching;
  WatchTimerHold timer;
};
