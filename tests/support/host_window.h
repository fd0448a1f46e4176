// A top-level window for controls under test. It writes down the commands it is told. Make a DesktopDriver
// first.
#pragma once

#include <functional>
#include <vector>

#include "framework/zarf_wnd.h"
#include "resources/resources.h"

class HostWindow : public ZarfWnd {
 public:
  struct Command {
    unsigned id;
    unsigned code;
    LPARAM value;
  };

  explicit HostWindow(RECT place = {0, 0, 300, 300}) : area(place) {
    static const bool registered = (RegisterResources(), true);
    Create(nullptr, registered ? WS_POPUP | WS_VISIBLE : 0);
  }

  std::vector<Command> commands;
  // Called on each command, before it is written down; the answer is the window's.
  std::function<LRESULT(const Command&)> onCommand;

  // The values of the commands with an id and a code, in order.
  std::vector<LPARAM> Values(unsigned id, unsigned code = 0) const {
    std::vector<LPARAM> values;
    for (const Command& command : commands) {
      if (command.id == id && command.code == code) values.push_back(command.value);
    }
    return values;
  }

  int PreCreate(char*, DWORD*, int placement[4]) override {
    placement[0] = area.left;
    placement[1] = area.top;
    placement[2] = Width(area);
    placement[3] = Height(area);
    return 0;
  }
  LRESULT OnCommand(const MessageRecord& record) override {
    const Command command{LowWord(record.wParam), HighWord(record.wParam), record.lParam};
    const LRESULT answer = onCommand ? onCommand(command) : 0;
    commands.push_back(command);
    return answer;
  }

 private:
  const RECT area;
};
