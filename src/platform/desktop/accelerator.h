// Keys that stand for commands of the main window.
#pragma once

#include <span>

#include "platform/desktop/types.h"

constexpr UINT FVIRTKEY = 0x01;
constexpr UINT FCONTROL = 0x08;
constexpr UINT FALT = 0x10;

struct Accelerator {
  UINT modifiers;  // FVIRTKEY with FCONTROL or FALT; the keys held must be just these
  unsigned key;    // VK_... or a capital letter or digit
  unsigned command;
};

// When the message is a key going down that the table has, sends WM_COMMAND with its command (high word 1) to
// the window and answers true.
bool TranslateAccelerator(HWND window, std::span<const Accelerator> table, const MessageRecord& message);
