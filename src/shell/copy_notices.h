// The notices by which running copies of the program tell each other that settings changed.
#pragma once

#include "platform/desktop/types.h"

// Codes of notices.
constexpr int kNotifySettings = 100;  // sound, animation or the refresh time changed
constexpr int kNotifySkin = 101;      // another skin was chosen
constexpr int kNotifyRaise = 102;     // somebody started the program again, without a file

// The message in which a notice arrives at every top-level window: wParam is the code, lParam the handle of
// the window that sent it when this process did, else 0: a handle means nothing outside its process.
UINT NotifyMessage();

// Makes this copy one of those that notices reach, until the process ends. Once, at start; where it fails the
// copy is alone.
void JoinCopies();
// Whether another copy of the program runs, of this user on this machine.
bool OtherCopiesRun();

// Sends a notice to every running copy, this one included. `senderWindow` may be null.
void BroadcastNotify(int code, HWND senderWindow);
