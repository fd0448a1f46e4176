// The toolbar of the main frame: flat buttons, each a small picture and a caption, that rise under the mouse
// and sink while pressed. A press that is let go on its button tells the parent WM_COMMAND with the button's
// command; one that is let go elsewhere does nothing. The face takes the colours of the current pane. It
// never takes the keyboard: what its buttons do has keys of its own in the frame.
#pragma once

#include <memory>
#include <vector>

#include "framework/owner_drawn.h"
#include "platform/desktop/bitmap.h"

// The kind of button that sends its command, to open a menu below itself while it is still drawn pressed.
// Every other kind posts it.
constexpr int kMenuToolButton = 1;
constexpr int kPlainToolButton = 2;

class ZarfToolBar : public OwnerDrawn {
 public:
  static constexpr int kMaxButtons = 50;
  enum class State { kNone = -1, kPressed = 0, kHot = 1 };

  // Adds a button at the right. Its picture is "tool_" and `iconId`; caption and tip are texts of the string
  // table. False when there are 50.
  bool AddButton(int commandId, int iconId, int captionStringId, int tipStringId, int kind);
  // The index and, in client pixels, the place of the button with this command; -1 when there is none.
  int ButtonRect(int commandId, RECT* rect);

  // The button under the mouse or pressed, -1 for none, and how it is drawn.
  int ActiveIndex() const { return activeIndex; }
  State ActiveState() const { return activeState; }
  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnClose(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnMouseMove(const MessageRecord& record) override;
  LRESULT OnLButtonUp(const MessageRecord& record) override;
  LRESULT OnTimer(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  int ItemAt(POINT point) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  void OnTrackingEnd() override;

 private:
  struct Button {
    int commandId;
    int iconId;
    int captionStringId;
    int tipStringId;
    int kind;
    std::unique_ptr<Bitmap> icon;  // from the creation of the window on
  };

  // True when that changed something.
  bool SetActive(int index, State state);
  void Release(int index);
  void Tell(const Button& button);
  void ShowTipOf(const Button& button);
  void PaintButton(HDC hdc, const RECT& rect, const Button& button, State state) const;

  std::vector<Button> buttons;
  int activeIndex = -1;
  State activeState = State::kNone;
  bool telling = false;  // a command is being sent: the button stays pressed while its menu is open
  bool hoverTimerRuns = false;
  int hoverTicks = 0;                  // of the hover timer since the mouse came to the hot button
  std::unique_ptr<Bitmap> background;  // from the creation of the window on
  std::unique_ptr<Bitmap> cornerPicture;
};
