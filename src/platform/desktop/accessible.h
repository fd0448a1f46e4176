// What windows tell assistive technology, such as a screen reader: what they are, what they are called, what
// is in them and what can be done with it. A window is asked by the messages below and may be asked at any
// time, but only while such a program is connected; it must answer without changing anything. Dialogs and
// their own controls are described by the desktop layer.
//
// A window may have items: things it draws that are no windows, such as the rows of a list. They are numbered
// from 0; kWholeWindow stands for the window itself.
#pragma once

#include <string>

#include "platform/desktop/messages.h"

constexpr int kWholeWindow = -1;

enum class AccessibleRole {
  kPane,
  kPicture,
  kText,
  kButton,
  kMenuButton,  // opens a menu
  kLink,
  kChooser,  // one of several, behind a menu
  kSlider,
  kScrollBar,
  kToolBar,
  kTabList,
  kTab,
  kList,
  kListItem,
  kCalendar,  // a grid of days
  kDay,
};

// The state of an item. Whether a window has the focus, is shown or can be used is known without it.
constexpr unsigned kAccessibleSelectable = 1;
constexpr unsigned kAccessibleSelected = 2;
constexpr unsigned kAccessiblePressed = 4;

// What a window answers about itself or about one of its items. Texts are in code page 1252.
struct AccessiblePart {
  AccessibleRole role = AccessibleRole::kPane;
  std::string name;         // empty: the window's title
  std::string description;  // what else there is to say, such as what is in it
  std::string value;        // what is chosen, of a chooser; of a slider its position is enough
  unsigned state = 0;       // kAccessible... flags
  bool pressable = false;   // whether AccessibleAction::kPress does something

  // Of an item: its place in client pixels, also outside the client area; empty while it is out of sight.
  RECT place;

  // Of a window: the number of its items, and the one that the keyboard works on (-1 for none).
  int items = 0;
  int currentItem = -1;
  // Of a slider: it stands at `position` of 0 to `lastPosition`; -1 for what is no slider.
  int position = 0;
  int lastPosition = -1;
};

// wParam: the item or kWholeWindow, lParam: an AccessiblePart* to fill in. Items are asked about only when
// the window has said that it has them.
constexpr UINT WM_DESCRIBE = 0x0380;
// lParam: a point in client pixels, also outside the client area. The result is 1 + the item there, or 0.
constexpr UINT WM_ITEMAT = 0x0381;
// Posted. wParam: an AccessibleAction, lParam: the item, kWholeWindow or the position.
constexpr UINT WM_DOACTION = 0x0382;

enum class AccessibleAction {
  kPress,        // what a click, or for what can be opened a double click, would do
  kSelect,       // of an item: becomes the current one, and the window gets the keyboard
  kSetPosition,  // of a slider
};

enum class AccessibleChange {
  kCurrentItem,
  kItems,  // their number, or what they say
  kValue,  // of a chooser or a slider
};
// Tells who listens that something about a window has changed, once it has. Costs next to nothing while
// nobody does.
void AnnounceChange(HWND window, AccessibleChange change);
