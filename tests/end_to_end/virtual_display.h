// An X display of the test's own, without a window manager, and hands to work on it.
#pragma once

#include <sys/types.h>

#include <string>

namespace tests {

// Runs a shell command and answers what it printed, without the last line end.
std::string Shell(const std::string& command);

class VirtualDisplay {
 public:
  // Fails the test when the display does not start.
  VirtualDisplay();
  ~VirtualDisplay();
  VirtualDisplay(const VirtualDisplay&) = delete;
  VirtualDisplay& operator=(const VirtualDisplay&) = delete;

  const std::string& Name() const { return name; }

  // Visible windows of a process with this title, as xdotool numbers, oldest first; one a line.
  std::string Windows(pid_t process, const std::string& title) const;
  // Waits until a process has a visible window of this title; empty, and a failed test, after 15 s.
  std::string WaitForWindow(pid_t process, const std::string& title) const;
  // Waits until it has none.
  void WaitForNoWindow(pid_t process, const std::string& title) const;

  // Gives a window the keyboard and presses keys (xdotool names) or types a text.
  void Press(const std::string& window, const std::string& keys) const;
  void Type(const std::string& window, const std::string& text) const;
  // Presses at one point of a window and releases at another, holding a key (xdotool name) if one is named.
  void Drag(const std::string& window, int x1, int y1, int x2, int y2, const std::string& key = "") const;
  // A number that stands for what a window shows.
  std::string Picture(const std::string& window) const;

 private:
  std::string Do(const std::string& arguments) const;

  pid_t server = -1;
  std::string name;
};

}  // namespace tests
