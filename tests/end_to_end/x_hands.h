// Hands and eyes on an X display of the test's own: it plays the keyboard, the mouse and, as there is none,
// the window manager, many times a second and without a program for each step. Coordinates are pixels of the
// screen.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace tests {

struct ShownWindow {
  unsigned long id = 0;
  std::string title;
  bool popup = false;  // a menu, a list or a tip: it never gets the keyboard
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
};

enum Modifiers : unsigned { kNoModifier = 0, kShift = 1, kCtrl = 2, kAlt = 4 };

class XHands {
 public:
  // Ends the test program where there is no such display.
  explicit XHands(const std::string& display);
  ~XHands();
  XHands(const XHands&) = delete;
  XHands& operator=(const XHands&) = delete;

  // The windows of a process that are shown, the lowest first.
  std::vector<ShownWindow> Windows(pid_t process) const;
  // Gives a window the keyboard.
  void Focus(unsigned long window) const;
  // Puts a process's windows in front of all others, in the order they have.
  void Raise(pid_t process) const;

  // Presses and releases a key by its X name ("Return", "a") or what stands for a character.
  void Press(const std::string& key, unsigned modifiers = kNoModifier) const;
  void Type(const std::string& text) const;
  void MoveTo(int x, int y) const;
  // Presses or releases a mouse button, 4 and 5 being the wheel.
  void Button(unsigned button, bool down) const;
  void Click(int x, int y, unsigned button = 1) const;
  void Hold(unsigned modifiers, bool down) const;

  // Asks a window as window managers do whether its program still takes what comes. True as well once the
  // window is gone; false when there is no answer within the time.
  bool Answers(unsigned long window, int timeoutMs) const;

 private:
  void Key(unsigned long symbol, bool down) const;
  struct Connection;
  Connection* x;
};

}  // namespace tests
