// Drives windows for tests as a user would: mouse and key events go through the platform's queue to the
// top-level window, so that what a dialog blocks stays blocked. Answers to dialogs, message boxes and menus
// are given before the action that opens them; one that nobody answers fails the test and is closed.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/desktop/window.h"

class QFileDialog;
class QWidget;

class DesktopDriver {
 public:
  // Starts the desktop layer, offscreen, on the first use in the process.
  DesktopDriver();
  // Fails the test when an answer was never asked for.
  ~DesktopDriver();
  DesktopDriver(const DesktopDriver&) = delete;
  DesktopDriver& operator=(const DesktopDriver&) = delete;

  // Points are in client pixels of `window`, keys are MK_SHIFT and MK_CONTROL.
  void Click(HWND window, POINT point, unsigned keys = 0);
  void DoubleClick(HWND window, POINT point);
  void RightClick(HWND window, POINT point);
  void MouseDown(HWND window, POINT point);
  void MouseUp(HWND window, POINT point);
  // Presses at one point and releases at another a moment later, while what the press began may wait for the
  // release. The screen's cursor goes along.
  void PressAndRelease(HWND window, POINT press, POINT release);
  void MoveMouse(HWND window, POINT point, unsigned keys = 0);
  // Presses in one window, moves in steps and releases in another of the same top-level window.
  void Drag(HWND from, POINT start, HWND to, POINT end, unsigned keys = 0);
  // Positive steps turn the wheel away from the user.
  void Wheel(HWND window, POINT point, int steps);
  // A key (VK_...) to whatever has the focus in the window's top-level window.
  void Press(HWND window, unsigned key, unsigned keys = 0, bool alt = false);
  void Type(HWND window, const std::string& text);
  // Puts a text (UTF-8) where the text cursor of a control is, from the clipboard; an empty one stands for a
  // clipboard that has nothing of any form.
  void PasteInto(HWND dialog, int id, const std::string& text);
  // Presses a push button or check box of a dialog.
  void ClickControl(HWND dialog, int id);
  // Types into a control after giving it the focus and selecting what it holds.
  void TypeInto(HWND dialog, int id, const std::string& text);

  // The next message box must contain this text (code page 1252) and is answered IDOK, IDYES or IDNO.
  void AnswerMessageBox(const std::string& textPart, int answer);
  // Called with the next dialog that opens; it must end it or register what does.
  void WhenDialogOpens(std::function<void(HWND dialog)> callback);
  // Answers the next dialog for a file or a folder, or for printing, with a path; empty: cancels it.
  void ChooseFile(const std::string& path);
  // The kinds of files that the last one offered.
  const std::vector<std::string>& LastFileKinds() const { return lastFileKinds; }
  // Chooses an item of the next popup menu by its text (without & and shortcut); empty: leaves the menu by
  // Escape.
  void ChooseMenuItem(const std::string& text);
  // The items of the last menu that was answered, "-" for separators, greyed ones in parentheses.
  const std::vector<std::string>& LastMenu() const { return lastMenu; }
  // The item that it opened at; empty where that could not be seen.
  const std::string& LastMenuStart() const { return lastMenuStart; }

  void Wait(int ms);
  // Runs the loop until the predicate holds; false, and a failed test, after the time.
  bool WaitUntil(const std::function<bool()>& predicate, int timeoutMs = 5000);
  void ProcessEvents();

  // How often any window was painted since the driver was made.
  int Paints() const;
  // The tip that is shown (UTF-8); empty when there is none.
  std::string ShownTip();
  // What the window shows at a client point.
  COLORREF PixelAt(HWND window, POINT point);

 private:
  struct Answer;
  void Poll();
  void Give(const Answer& answer, QWidget* open);
  void AnswerMenu(const Answer& answer);
  void AnswerFileDialog(const Answer& answer, QFileDialog& dialog);

  std::vector<Answer> answers;
  std::vector<std::string> lastMenu;
  std::string lastMenuStart;
  std::vector<std::string> lastFileKinds;
  struct Watch;
  Watch* watch;
};
