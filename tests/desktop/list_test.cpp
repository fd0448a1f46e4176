// Lists and list views: selection, keys, wheel, drags, what is painted, and how they follow a file that
// others change.
#include <gtest/gtest.h>

#include <memory>

#include "controls/list_view.h"
#include "framework/fonts.h"
#include "framework/services.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/recording_dc.h"
#include "support/temporary_calendar.h"

namespace {

using Texts = std::vector<std::string>;
using Values = std::vector<LPARAM>;

constexpr int kId = 100;
constexpr int kRow = 20;
constexpr COLORREF kOdd = RGB(1, 1, 1);
constexpr COLORREF kEven = RGB(2, 2, 2);

// A list view that writes down what it is asked to draw and told by the mouse.
class CellsView : public ZarfWndListView {
 public:
  using ZarfWndListView::ZarfWndListView;

  struct Cell {
    COLORREF colour;
    int index;
    int state;
    RECT rect;
    bool focused;
  };
  std::vector<Cell> drawn;
  std::vector<std::string> events;

  void DrawCell(HDC hdc, COLORREF colour, int index, int state, const RECT& rect) override {
    EXPECT_EQ(hdc->Font(), GetFont(FontSans, 400));
    drawn.push_back({colour, index, state, rect, HasFocusMark()});
  }
  void OnCellMouseMove(POINT, int index, const RECT&) override { Tell("move", index); }
  void OnCellLButtonDown(POINT, int index, const RECT&) override { Tell("down", index); }
  void OnCellLButtonUp(POINT, int index, const RECT&) override { Tell("up", index); }

 private:
  void Tell(const std::string& what, int index) { events.push_back(what + " " + std::to_string(index)); }
};

class Lists : public testing::Test {
 protected:
  static ListViewSetup Setup(int items, int columns = 1) {
    ListViewSetup setup;
    setup.commandId = kId;
    setup.itemCount = items;
    setup.columns = columns;
    setup.rowHeight = kRow;
    setup.oddCell = kOdd;
    setup.evenCell = kEven;
    return setup;
  }

  // 120 x 100 pixels: a list 100 pixels wide with five rows in sight.
  void Put(ZarfWndListView& view) {
    ASSERT_TRUE(view.Create(&host));
    view.Move(10, 10, 120, 100, 1);
    driver.Wait(20);
  }
  HWND ListOf(const ZarfWndListView& view) { return WindowFromPoint(ClientToScreen(view.Handle(), {5, 5})); }
  ZarfWndList& ListObject(const ZarfWndListView& view) {
    return *static_cast<ZarfWndList*>(ObjectFromHandle(ListOf(view)));
  }
  ZarfClassWndScrollBar& BarOf(const ZarfWndListView& view) {
    const HWND part = WindowFromPoint(ClientToScreen(view.Handle(), {110, 50}));
    return *static_cast<ZarfClassWndScrollBar*>(ObjectFromHandle(GetParent(part)));
  }
  void Key(const ZarfWndListView& view, unsigned key) { driver.Press(view.Handle(), key); }

  DesktopDriver driver;
  HostWindow host;
};

TEST_F(Lists, ClicksSelectAndTellTheParent) {
  CellsView view(Setup(3));
  Put(view);
  EXPECT_EQ(GetClassName(view.Handle()), "ZarfWnd");
  EXPECT_EQ(GetFocus(), ListOf(view)) << "a new list takes the focus";
  SetFocus(host.Handle());

  driver.Click(ListOf(view), {50, 25});
  EXPECT_EQ(view.SelectedItem(), 1);
  EXPECT_EQ(GetFocus(), ListOf(view));
  EXPECT_EQ(host.Values(kId, kListSelected), Values{1});
  std::erase(view.events, "move 1");  // the cursor comes over the cell first
  EXPECT_EQ(view.events, (std::vector<std::string>{"down 1", "up 1"}));

  driver.Click(ListOf(view), {50, 75});
  EXPECT_EQ(view.SelectedItem(), 1) << "empty space";
  EXPECT_EQ(host.Values(kId, kListSelected), Values{1});

  driver.RightClick(ListOf(view), {50, 5});
  driver.RightClick(ListOf(view), {50, 75});
  EXPECT_EQ(view.SelectedItem(), 0);
  EXPECT_EQ(host.Values(kId, kListRightClick), (Values{0, -1}));

  driver.DoubleClick(ListOf(view), {50, 45});
  driver.DoubleClick(ListOf(view), {50, 75});
  EXPECT_EQ(view.SelectedItem(), 2);
  EXPECT_EQ(host.Values(kId, kListDoubleClick), (Values{2, -1}));
  EXPECT_TRUE(host.Values(kId, kListFirstRow).empty()) << "scrolling is nobody's business";
}

TEST_F(Lists, SelectingScrollsIntoSightAndRefusesWhatIsNotThere) {
  CellsView view(Setup(100));
  Put(view);
  EXPECT_TRUE(view.SelectItem(50));
  EXPECT_EQ(ListObject(view).FirstRow(), 48);
  EXPECT_EQ(BarOf(view).Position(), 48);
  EXPECT_FALSE(view.SelectItem(100));
  EXPECT_FALSE(view.SelectItem(-2));
  EXPECT_EQ(view.SelectedItem(), 50);
  EXPECT_TRUE(view.SelectItem(4));
  EXPECT_EQ(ListObject(view).FirstRow(), 0);
  EXPECT_TRUE(view.SelectItem(-1));
  EXPECT_EQ(view.SelectedItem(), -1);

  view.SetFirstRow(80);
  view.SetFirstRow(100);
  EXPECT_EQ(BarOf(view).Position(), 80);
  view.SelectItem(81);
  view.SetItemCount(60);
  EXPECT_EQ(view.SelectedItem(), -1);
  EXPECT_EQ(ListObject(view).FirstRow(), 59);
  EXPECT_EQ(BarOf(view).Position(), 59);
  view.SetItemCount(0);
  EXPECT_EQ(ListObject(view).FirstRow(), 0);
  EXPECT_FALSE(view.SelectItem(0));
}

TEST_F(Lists, WheelScrollBarAndListGoTogether) {
  CellsView view(Setup(10));
  Put(view);
  driver.Wheel(ListOf(view), {50, 50}, -1);
  driver.Wheel(ListOf(view), {50, 50}, -1);
  driver.Wheel(ListOf(view), {50, 50}, 1);
  driver.ProcessEvents();
  EXPECT_EQ(ListObject(view).FirstRow(), 1);
  EXPECT_EQ(BarOf(view).Position(), 1);
  driver.Wheel(BarOf(view).Handle(), {10, 50}, -1);
  driver.ProcessEvents();
  EXPECT_EQ(ListObject(view).FirstRow(), 2) << "over the bar as well, and one row only";
  driver.Click(BarOf(view).Slider().Handle(), {10, 55});
  driver.ProcessEvents();
  EXPECT_EQ(ListObject(view).FirstRow(), 9);
}

TEST_F(Lists, TheScrollBarMayStandOnTheLeft) {
  ListViewSetup setup = Setup(10);
  setup.scrollBarOnLeft = true;
  CellsView view(setup);
  Put(view);
  RECT list;
  GetWindowRect(WindowFromPoint(ClientToScreen(view.Handle(), {60, 50})), &list);
  EXPECT_EQ(ScreenToClient(view.Handle(), {list.left, list.top}), (POINT{20, 0}));
  EXPECT_EQ(Width(list), 100);
  view.Move(10, 10, 7, 3, 1);  // no room at all
  driver.Wait(20);
}

TEST_F(Lists, CellsAreStripedAndTheOwnerDrawsThoseThereAre) {
  CellsView view(Setup(4, 3));
  Put(view);
  view.SelectItem(1);
  view.drawn.clear();
  RecordingDc dc;
  ListObject(view).Paint(&dc, {0, 0, 90, 50});
  ASSERT_EQ(view.drawn.size(), 4u);
  for (int index = 0; index < 4; ++index) {
    EXPECT_EQ(view.drawn[static_cast<std::size_t>(index)].index, index);
    EXPECT_EQ(view.drawn[static_cast<std::size_t>(index)].state, index == 1 ? 1 : 0);
    EXPECT_EQ(view.drawn[static_cast<std::size_t>(index)].colour, index % 2 ? kOdd : kEven);
  }
  EXPECT_EQ(view.drawn[3].rect, (RECT{0, 20, 30, 40}));
  // Stripes go on where there are no cells.
  dc.ExpectColour(kEven, {{35, 25}, {89, 49}});
  dc.ExpectColour(kOdd, {{65, 25}});

  view.drawn.clear();
  dc.SetClip({40, 5, 50, 10});
  ListObject(view).Paint(&dc, {0, 0, 90, 50});
  ASSERT_EQ(view.drawn.size(), 1u) << "only what needs painting";
  EXPECT_EQ(view.drawn[0].index, 1);

  view.SetItemCount(0);
  view.drawn.clear();
  ListObject(view).Paint(&dc, {0, 0, 90, 50});
  ASSERT_EQ(view.drawn.size(), 1u);
  EXPECT_EQ(view.drawn[0].index, -1);
  EXPECT_EQ(view.drawn[0].state, 0) << "no cell is no selected cell";
  EXPECT_EQ(view.drawn[0].rect, (RECT{0, 0, 90, 50}));
  EXPECT_EQ(view.drawn[0].colour, kOdd);
}

TEST_F(Lists, TheFocusMarkLeavesNothingBehindWhenItComesBackToACell) {
  CellsView view(Setup(30));
  Put(view);
  SetFocus(host.Handle());
  driver.Press(host.Handle(), VK_TAB);
  Key(view, VK_DOWN);
  driver.Wheel(ListOf(view), {50, 50}, -2);  // the selected cell goes out of sight
  const auto dots = [&] {
    int count = 0;
    for (int y = 0; y < 100; ++y) count += driver.PixelAt(ListOf(view), {0, y}) == RGB(255, 255, 255);
    return count;
  };
  EXPECT_EQ(dots(), 50) << "around all cells";
  driver.Click(ListOf(view), {50, 50});
  EXPECT_LE(dots(), 10) << "around one cell, or shown no more";
}

TEST_F(Lists, AClickPaintsTheTwoCellsItChangesAndNoMore) {
  CellsView view(Setup(5));
  Put(view);
  view.SelectItem(0);
  driver.Wait(250);  // the focus mark
  view.drawn.clear();
  driver.Click(ListOf(view), {50, 25});
  ASSERT_EQ(view.drawn.size(), 2u);
  EXPECT_EQ(view.drawn[0].state, 0);
  EXPECT_EQ(view.drawn[1].state, 1);
  EXPECT_TRUE(view.drawn[1].focused);
  view.drawn.clear();
  driver.MoveMouse(ListOf(view), {50, 65});
  driver.MoveMouse(ListOf(view), {60, 65});
  EXPECT_TRUE(view.drawn.empty()) << "the mouse alone paints nothing";
  EXPECT_EQ(view.events.back(), "move 3");

  SetFocus(host.Handle());
  ASSERT_TRUE(driver.WaitUntil([&] { return !view.HasFocusMark(); }));
  driver.Wait(20);
  ASSERT_FALSE(view.drawn.empty());
  EXPECT_EQ(view.drawn.back().index, 1);
  EXPECT_FALSE(view.drawn.back().focused) << "the selected cell shows whether the list has the keyboard";
}

class Drags : public Lists {
 protected:
  void SetUp() override {
    ListViewSetup setup = Setup(5);
    setup.dragEnabled = true;
    view = std::make_unique<CellsView>(setup);
    Put(*view);
    host.onCommand = [this](const HostWindow::Command& command) {
      if (command.id == kDropMove || command.id == kDropCopy)
        dropPoint = *reinterpret_cast<const POINT*>(command.value);
      return LRESULT{command.id == kDropQuery && accepts};
    };
  }
  std::size_t Count(unsigned id) const { return host.Values(id).size(); }

  std::unique_ptr<CellsView> view;
  bool accepts = true;
  POINT dropPoint;
};

TEST_F(Drags, ADragAsksOnTheWayAndDropsOnRelease) {
  driver.Drag(ListOf(*view), {50, 25}, host.Handle(), {200, 200});
  EXPECT_EQ(view->SelectedItem(), 1) << "what is dragged is selected";
  EXPECT_GE(Count(kDropQuery), 1u);
  EXPECT_EQ(Count(kDropMove), 1u);
  EXPECT_EQ(dropPoint, ClientToScreen(host.Handle(), {200, 200}));
  EXPECT_EQ(GetCapture(), nullptr);
  EXPECT_FALSE(ListObject(*view).Dragging());

  driver.Drag(ListOf(*view), {50, 25}, host.Handle(), {200, 200}, MK_CONTROL);
  EXPECT_EQ(Count(kDropCopy), 1u);
  EXPECT_EQ(Count(kDropMove), 1u);

  driver.Drag(ListOf(*view), {50, 25}, ListOf(*view), {50, 65});
  EXPECT_EQ(Count(kDropCopy) + Count(kDropMove), 2u) << "nothing is dropped on the list itself";
  view->SetItemCount(2);
  driver.Drag(ListOf(*view), {50, 90}, host.Handle(), {200, 200});
  EXPECT_EQ(Count(kDropMove), 1u) << "empty space cannot be dragged";
}

TEST_F(Drags, EscapeAndLostCaptureEndADrag) {
  for (const bool byKey : {true, false}) {
    driver.MouseDown(ListOf(*view), {50, 25});
    driver.MoveMouse(ListOf(*view), {52, 27});
    ASSERT_TRUE(ListObject(*view).Dragging());
    if (byKey) {
      driver.Press(view->Handle(), VK_ESCAPE);
    } else {
      ReleaseCapture();
    }
    EXPECT_FALSE(ListObject(*view).Dragging());
    EXPECT_EQ(view->SelectedItem(), 1);
    driver.MoveMouse(host.Handle(), {200, 200});
    driver.MouseUp(host.Handle(), {200, 200});
    EXPECT_EQ(Count(kDropMove), 0u);
  }
}

TEST_F(Drags, APressThatEndsElsewhereDragsNothingLater) {
  driver.MouseDown(ListOf(*view), {50, 25});
  driver.MouseUp(host.Handle(), {200, 200});
  driver.MoveMouse(ListOf(*view), {50, 45});
  SendMessage(ListOf(*view), WM_MOUSEMOVE, MK_LBUTTON, MakeLParam(50, 45));
  EXPECT_FALSE(ListObject(*view).Dragging());
}

// ---- Lists of files ----

class RecordsView : public ZarfWndListView {
 public:
  using ZarfWndListView::ZarfWndListView;
  std::vector<std::string> drawn;

  void DrawRecordCell(core::RecordFile& file, core::RecordList& records, HDC, COLORREF, int index, int,
                      const RECT&) override {
    if (index < 0) return;
    core::Appointment appointment;
    const bool read = file.ReadRecord(&appointment, records.KeyAt(static_cast<std::size_t>(index)));
    drawn.emplace_back(read ? core::ReadText(appointment.subject) : "(gone)");
  }
};

class FileLists : public Lists {
 protected:
  FileLists() {
    for (const char* subject : {"b", "d", "f"}) calendar.Add(tests::Entry(subject));
    records.AddMatchAll();
    EXPECT_TRUE(records.Run(calendar.file));
    records.Sort(calendar.file, {static_cast<std::int32_t>(offsetof(core::Appointment, subject)),
                                 sizeof(core::Appointment::subject), core::CompareText});
  }
  ~FileLists() override { core::SetRefreshEnabled(true); }

  void Show(bool dragEnabled = false) {
    ListViewSetup setup = Setup(0);
    setup.dragEnabled = dragEnabled;
    shown = std::make_unique<RecordsView>(setup);
    Put(*shown);
    shown->SetFile(&calendar.file, &records);
  }
  std::vector<std::string> Shown() {
    shown->drawn.clear();
    RepaintWindow(ListOf(*shown));
    return shown->drawn;
  }

  tests::TemporaryCalendar calendar;
  core::RecordQuery records;
  std::unique_ptr<RecordsView> shown;
};

TEST_F(FileLists, AnotherUsersChangeArrivesByItself) {
  Show();
  EXPECT_EQ(Shown(), (Texts{"b", "d", "f"}));

  core::RecordFile other(calendar.Path(), "");
  const tests::Entry added("c");
  ASSERT_EQ(other.AddRecord(&added.appointment), core::Result::kDone);
  core::SetRefreshEnabled(false);
  driver.Wait(2300);
  EXPECT_EQ(shown->ItemCount(), 3) << "not while a record is being edited";
  EXPECT_TRUE(host.Values(kId, kListFileChanged).empty());

  core::SetRefreshEnabled(true);
  ASSERT_TRUE(driver.WaitUntil([&] { return shown->ItemCount() == 4; }));
  driver.ProcessEvents();
  EXPECT_EQ(host.Values(kId, kListFileChanged), (Values{3, 2}));
  EXPECT_EQ(Shown(), (Texts{"b", "c", "d", "f"}));
  core::FileWatch::OfProcess().Look();
  driver.ProcessEvents();
  EXPECT_EQ(host.Values(kId, kListFileChanged), (Values{3, 2})) << "once for one change";
}

TEST_F(FileLists, AListIsNotRebuiltUnderADrag) {
  Show(true);
  driver.MouseDown(ListOf(*shown), {50, 25});
  driver.MoveMouse(ListOf(*shown), {52, 27});
  calendar.Add(tests::Entry("a"));
  core::FileWatch::OfProcess().Look();
  EXPECT_EQ(shown->SelectedItem(), 1);
  driver.MouseUp(ListOf(*shown), {52, 27});
  core::FileWatch::OfProcess().Look();
  EXPECT_EQ(shown->ItemCount(), 4);
}

TEST_F(FileLists, AParentMayTakeOtherListViewsAwayWhileItIsTold) {
  Show();
  auto second = std::make_unique<RecordsView>(Setup(0));
  Put(*second);
  core::RecordQuery secondRecords = records;
  second->SetFile(&calendar.file, &secondRecords);
  host.onCommand = [&](const HostWindow::Command&) {
    second.reset();
    core::FileWatch::OfProcess().Look();  // as a box inside which the timers go on would
    return LRESULT{0};
  };
  calendar.Add(tests::Entry("a"));
  core::FileWatch::OfProcess().Look();
  EXPECT_EQ(shown->ItemCount(), 4);
  EXPECT_EQ(second, nullptr);
}

}  // namespace
