// What controls tell assistive technology, what it does with them, and what keys do.
#include <gtest/gtest.h>

#include <memory>

#include "controls/list_view.h"
#include "controls/tabs.h"
#include "controls/toolbar.h"
#include "framework/link_button.h"
#include "pickers/date_picker.h"
#include "platform/desktop/device_context.h"
#include "support/desktop_driver.h"
#include "support/host_window.h"
#include "support/screen_reader.h"

namespace {

using Texts = std::vector<std::string>;
using Values = std::vector<LPARAM>;

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr const char* kPress = "Press";
constexpr const char* kSelect = "SetFocus";

class Fruit : public ZarfWndListView {
 public:
  Fruit() : ZarfWndListView({.commandId = 40, .itemCount = 30, .rowHeight = 10}) {}
  std::string CellText(int index) override { return "fruit " + std::to_string(index); }
};

class Access : public testing::Test {
 protected:
  // On the host itself nothing has the focus that keys would work.
  Access() { SetFocus(host.Handle()); }
  void Put(ZarfWnd& control, const RECT& place, const char* title = "") {
    ASSERT_TRUE(control.Create(&host));
    control.Move(place.left, place.top, Width(place), Height(place), 1);
    SetWindowText(control.Handle(), title);
    driver.Wait(20);
  }
  void Press(const std::vector<unsigned>& keys) {
    for (const unsigned key : keys) driver.Press(host.Handle(), key);
    driver.ProcessEvents();
  }
  HWND At(POINT point) { return WindowFromPoint(ClientToScreen(host.Handle(), point)); }

  DesktopDriver driver;
  HostWindow host;
  ScreenReader reader;
};

class SmallControls : public Access {
 protected:
  SmallControls() {
    menu.AddItemText("Home", 1);
    menu.AddItemText("Work", 2);
    menu.SetCurrent(1);
    Put(link, {0, 0, 100, 20});
    Put(spin, {0, 20, 20, 40}, "Louder");
    Put(menu, {0, 40, 100, 60}, "Category");
  }

  ZarfClassLinkButton link{17, {kWhite, kBlack, kBlack}, "More...", -1, DT_SINGLELINE};
  ZarfSpinButton spin{18, SpinKind::kUp, kWhite};
  TFlyMenu menu{kWhite, kBlack};
};

TEST_F(SmallControls, AreReadAndPressed) {
  EXPECT_EQ(reader.Read(link.Handle()), "Link \"More...\"");
  EXPECT_EQ(reader.Read(spin.Handle()), "Button \"Louder\"");
  EXPECT_EQ(reader.Read(menu.Handle()), "ComboBox \"Category: Home\" = Home");
  driver.MouseDown(spin.Handle(), {5, 5});
  EXPECT_EQ(reader.Read(spin.Handle()), "Button \"Louder\" pressed");
  driver.MouseUp(spin.Handle(), {5, 5});
  host.commands.clear();

  reader.Act(link.Handle(), -1, kPress);
  reader.Act(spin.Handle(), -1, kPress);
  driver.ChooseMenuItem("Work");
  reader.Act(menu.Handle(), -1, kPress);
  ASSERT_TRUE(driver.WaitUntil([&] { return host.commands.size() == 3; }));
  EXPECT_EQ(host.Values(17), Values{0});
  EXPECT_EQ(host.Values(18).size(), 1U);
  EXPECT_EQ(host.Values(2).size(), 1U);
  EXPECT_EQ(reader.Read(menu.Handle()), "ComboBox \"Category: Work\" = Work");
  EXPECT_EQ(reader.TakeHeard(), Texts{"value Work"});
}

TEST_F(SmallControls, AreWorkedByKeys) {
  driver.Click(link.Handle(), {5, 5});
  EXPECT_NE(GetFocus(), link.Handle()) << "a click is no reason to leave where one is";
  host.commands.clear();

  SetFocus(link.Handle());
  EXPECT_FALSE(ShowsFocus(link.Handle())) << "nobody asked for it by a key";
  Press({VK_SPACE, VK_TAB});
  EXPECT_EQ(host.Values(17), Values{0});
  EXPECT_EQ(GetFocus(), menu.Handle()) << "the spin button's owner did not ask for a stop";
  EXPECT_TRUE(ShowsFocus(menu.Handle()));
  const auto marks = [&] {
    int dots = 0;
    for (int y = 0; y < 20; ++y) dots += driver.PixelAt(menu.Handle(), {0, y}) == kBlack ? 1 : 0;
    return dots;
  };
  EXPECT_GT(marks(), 4) << "every other pixel beside the arrow";
  driver.ChooseMenuItem("Home");
  Press({VK_SPACE});
  ASSERT_TRUE(driver.WaitUntil([&] { return host.Values(1).size() == 1; }));
  EXPECT_TRUE(ShowsFocus(menu.Handle())) << "still, when the menu has gone";

  SetTabStop(spin.Handle(), true);
  driver.Press(host.Handle(), VK_TAB, MK_SHIFT);
  EXPECT_EQ(GetFocus(), spin.Handle());
  EXPECT_EQ(marks(), 0);
  Press({VK_SPACE, VK_SPACE});
  EXPECT_EQ(host.Values(18).size(), 2U);
  EXPECT_FALSE(spin.Pressed());
  SendMessage(spin.Handle(), WM_KEYDOWN, VK_SPACE, 0);
  EXPECT_TRUE(spin.Pressed());
  SetFocus(host.Handle());
  EXPECT_FALSE(spin.Pressed()) << "the key comes up elsewhere";
}

TEST_F(Access, SlidersAreReadAndMoved) {
  ZarfClassWndScrollBar bar(21, 30, 20, kWhite);
  Put(bar, {0, 0, 20, 200}, "Rows");
  const HWND slider = bar.Slider().Handle();
  EXPECT_EQ(reader.Read(bar.Handle()), "ScrollBar \"Rows\" = 0/29 3");
  EXPECT_EQ(reader.Read(bar.Handle(), 0), "Button \"Up\"");
  EXPECT_EQ(reader.ReadAt(bar.Handle(), {5, 195}), "Button \"Down\"");
  EXPECT_EQ(reader.Read(slider), "Slider \"\" = 0/29");
  reader.MoveSlider(bar.Handle(), 12);
  EXPECT_EQ(reader.Read(slider), "Slider \"\" = 12/29");
  EXPECT_EQ(reader.TakeHeard(), (Texts{"value 12", "value 12"})) << "the bar and its slider";
  reader.MoveSlider(slider, 99);
  EXPECT_EQ(host.Values(21), (Values{12, 29}));

  SetFocus(slider);
  Press({VK_HOME, VK_UP, VK_DOWN, VK_NEXT, VK_PRIOR, VK_RIGHT, VK_LEFT, VK_END, VK_NEXT});
  EXPECT_EQ(host.Values(21), (Values{12, 29, 0, 1, 11, 1, 2, 1, 29}));
  bar.SetCount(2.5);
  EXPECT_EQ(reader.Read(bar.Handle()), "ScrollBar \"Rows\" = 1/2 3");
  bar.SetCount(0);
  EXPECT_EQ(reader.Read(bar.Handle()), "ScrollBar \"Rows\" 3") << "nothing to scroll";
}

TEST_F(Access, TabsAreReadAndChosen) {
  TTabsWnd tabs(30, kWhite, 40, kBlack);
  Put(tabs, {0, 0, 200, 20}, "Views");
  SetFocus(tabs.Handle());
  Press({VK_LEFT, VK_RIGHT, VK_HOME, VK_END});
  EXPECT_TRUE(host.commands.empty()) << "no tabs, nothing to choose";
  int id = 11;
  for (const char* caption : {"Day", "Week", "Month"}) tabs.AddTab(id++, caption, kWhite, kBlack);
  EXPECT_EQ(reader.Read(tabs.Handle()), "PageTabList \"Views\" focused 3");
  EXPECT_EQ(reader.Read(tabs.Handle(), 0), "PageTab \"Day\" selected focused");
  EXPECT_EQ(reader.ReadAt(tabs.Handle(), {50, 10}), "PageTab \"Week\"");
  EXPECT_EQ(reader.Read(tabs.Handle(), 3), "none");
  reader.TakeHeard();

  Press({VK_RIGHT, VK_RIGHT, VK_RIGHT, VK_LEFT, VK_HOME, VK_END});
  EXPECT_EQ(host.Values(30), (Values{12, 13, 12, 11, 13}));
  EXPECT_EQ(reader.TakeHeard(),
            (Texts{"selection Week", "focus Week", "selection Month", "focus Month", "selection Week",
                   "focus Week", "selection Day", "focus Day", "selection Month", "focus Month"}));
  reader.Act(tabs.Handle(), 0, kPress);
  EXPECT_EQ(host.Values(30).back(), 11);
}

TEST_F(Access, ToolbarButtonsAreReadAndPressed) {
  ZarfToolBar bar;
  bar.AddButton(1005, 2000, 3004, 3004, kMenuToolButton);
  bar.AddButton(1001, 2001, 3000, 3000, kPlainToolButton);
  Put(bar, {0, 0, 280, 25}, "Toolbar");
  EXPECT_EQ(reader.Read(bar.Handle()), "ToolBar \"Toolbar\" 2");
  EXPECT_EQ(reader.Read(bar.Handle(), 1), "Button \"New\"");
  EXPECT_EQ(reader.ReadAt(bar.Handle(), {30, 10}), "ButtonMenu \"File\"");
  host.onCommand = [&](const HostWindow::Command& command) {
    EXPECT_EQ(reader.Read(bar.Handle(), 0), command.id == 1005
                                                ? "ButtonMenu \"File\" pressed"  // its menu is open
                                                : "ButtonMenu \"File\"");
    return LRESULT{0};
  };
  reader.Act(bar.Handle(), 0, kPress);
  reader.Act(bar.Handle(), 1, kPress);
  EXPECT_EQ(host.commands.size(), 2U);
  EXPECT_EQ(host.Values(1001).size(), 1U);
  EXPECT_EQ(bar.ActiveIndex(), -1);
}

TEST_F(Access, RowsAreReadFoundSelectedAndOpened) {
  Fruit view;
  Put(view, {0, 0, 120, 50}, "Fruit");
  const HWND list = At({5, 5});
  EXPECT_EQ(reader.Read(list), "List \"Fruit\" focused 30");
  EXPECT_EQ(reader.Read(list, 4), "ListItem \"fruit 4\"");
  EXPECT_EQ(reader.Read(list, 5), "ListItem \"fruit 5\" offscreen");
  EXPECT_EQ(reader.ReadAt(list, {5, 25}), "ListItem \"fruit 2\"");
  reader.TakeHeard();

  Press({VK_DOWN, VK_NEXT, VK_PRIOR});
  EXPECT_EQ(reader.TakeHeard(),
            (Texts{"selection fruit 0", "focus fruit 0", "selection fruit 5", "focus fruit 5", "value 3",
                   "value 3", "selection fruit 0", "focus fruit 0", "value 0", "value 0"}));
  EXPECT_EQ(reader.Read(list, 0), "ListItem \"fruit 0\" selected focused");
  Press({VK_DOWN, VK_APPS});
  EXPECT_EQ(host.Values(40, kListRightClick), Values{1});

  SetFocus(host.Handle());
  reader.Act(list, 20, kSelect);
  EXPECT_EQ(view.SelectedItem(), 20);
  EXPECT_EQ(GetFocus(), list);
  EXPECT_TRUE(host.Values(40, kListDoubleClick).empty());
  reader.Act(list, 2, kPress);
  EXPECT_EQ(host.Values(40, kListDoubleClick), Values{2});

  view.SetItemCount(2);
  EXPECT_EQ(reader.Read(list), "List \"Fruit\" focused 2");
  EXPECT_EQ(reader.Read(list, 4), "none") << "asked for before, gone now";
}

TEST_F(Access, DaysAreReadAndPicked) {
  MiniCalendar calendar(50, {});
  calendar.SetDate(2004, 3, 14);
  Put(calendar, {0, 0, 108, 130});
  const HWND grid = At({5, 40});
  int part = 0;
  for (const char* read :
       {"ComboBox \"Year: 2004\" = 2004", "ComboBox \"Month: March\" = March", "Table \"March 2004\" 31",
        "Button \"Previous month\"", "Button \"Today\"", "Button \"Next month\""}) {
    EXPECT_EQ(reader.Read(calendar.Handle(), part++), read);
  }
  EXPECT_EQ(reader.Read(grid, 13), "Cell \"Sunday, March 14, 2004\" selected");
  EXPECT_EQ(reader.ReadAt(grid, {20, 5}), "Cell \"Monday, March 1, 2004\"");
  EXPECT_EQ(reader.ReadAt(grid, {5, 5}), "none") << "February";
  reader.TakeHeard();

  SetFocus(grid);
  driver.ProcessEvents();
  EXPECT_EQ(reader.TakeHeard(), Texts{"focus Sunday, March 14, 2004"});
  const struct {
    unsigned key;
    core::Date date;
  } kSteps[] = {{VK_RIGHT, {15, 3, 2004}}, {VK_DOWN, {22, 3, 2004}}, {VK_DOWN, {29, 3, 2004}},
                {VK_DOWN, {5, 4, 2004}},   {VK_UP, {29, 3, 2004}},   {VK_END, {31, 3, 2004}},
                {VK_NEXT, {30, 4, 2004}},  {VK_HOME, {1, 4, 2004}},  {VK_LEFT, {31, 3, 2004}},
                {VK_PRIOR, {29, 2, 2004}}, {VK_SPACE, {29, 2, 2004}}};
  for (const auto& step : kSteps) {
    host.commands.clear();
    Press({step.key});
    EXPECT_EQ(host.Values(50).size(), 1U) << step.key;
    EXPECT_EQ(core::DayIndex(calendar.Date()), core::DayIndex(step.date)) << step.key;
  }
  EXPECT_EQ(reader.Read(calendar.Handle(), 1), "ComboBox \"Month: February\" = February")
      << "the choosers go along";
  host.commands.clear();
  Press({VK_END, 'A'});
  EXPECT_TRUE(host.commands.empty()) << "where it is already";
  for (const auto& [date, key] :
       {std::pair{core::kFirstDate, VK_UP}, std::pair{core::LastDate(), VK_RIGHT}}) {
    calendar.SetDate(date.year, date.month, date.day);
    Press({key});
    EXPECT_EQ(core::DayIndex(calendar.Date()), core::DayIndex(date)) << "the edge of the calendar";
  }
  reader.Act(grid, 1, kPress);
  EXPECT_EQ(calendar.Date().day, 2);
  const core::Date today = core::Today();
  calendar.SetDate(today.year, today.month, today.day);
  EXPECT_NE(reader.Read(grid, today.day - 1).find(" (Today)"), std::string::npos);
}

TEST_F(Access, TheDateDialogIsWorkedByKeys) {
  DatePickerDialog picker({14, 3, 2004});
  driver.WhenDialogOpens([&](HWND dialog) {
    EXPECT_EQ(GetClassName(GetFocus()), "ZarfCalMonth");
    for (const unsigned key : {VK_DOWN, VK_TAB, VK_TAB, VK_TAB, VK_SPACE, VK_TAB}) driver.Press(dialog, key);
    EXPECT_EQ(GetClassName(GetFocus()), "Button") << "the dialog's own are in the round";
    driver.ProcessEvents();
    driver.Press(dialog, VK_RETURN);
  });
  EXPECT_TRUE(picker.Run(&host));
  EXPECT_EQ(core::DayIndex(picker.Date()), core::DayIndex(2004, 4, 21)) << "a week down, a month on";
}

TEST_F(Access, NothingOutlivesItsWindow) {
  Fruit view;
  auto tabs = std::make_unique<TTabsWnd>(30, kWhite, 40, kBlack);
  tabs->AddTab(1, "Day", kWhite, kBlack);
  Put(view, {0, 0, 120, 50});
  Put(*tabs, {0, 60, 120, 80});
  reader.ExpectEnd(At({5, 5}), [&] { view.Destroy(); });
  reader.ExpectEnd(tabs->Handle(), [&] { tabs.reset(); });

  auto late = std::make_unique<TTabsWnd>(30, kWhite, 40, kBlack);
  late->AddTab(1, "Day", kWhite, kBlack);
  late->AddTab(2, "Week", kWhite, kBlack);
  Put(*late, {0, 60, 120, 80});
  AnnounceChange(late->Handle(), AccessibleChange::kCurrentItem);
  const HWND window = late->Handle();
  PostMessage(window, WM_DOACTION, static_cast<WPARAM>(AccessibleAction::kPress), 1);
  late.reset();
  AnnounceChange(window, AccessibleChange::kValue);
  driver.ProcessEvents();
  EXPECT_TRUE(host.commands.empty());
}

TEST_F(SmallControls, ThatADialogCoversCannotBePressed) {
  driver.WhenDialogOpens([&](HWND dialog) {
    reader.Act(link.Handle(), -1, kPress);
    driver.ClickControl(dialog, IDCANCEL);
  });
  DatePickerDialog({14, 3, 2004}).Run(&host);
  EXPECT_TRUE(host.Values(17).empty());
}

}  // namespace
