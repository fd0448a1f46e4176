// The start and end of the desktop layer, the message loop, and what comes from outside while it runs.
#pragma once

#include <functional>

#include "platform/desktop/types.h"

// Connects to the desktop. Call it once, first of all; false when there is no display to connect to (said on
// standard error). The arguments must outlive the program.
bool StartDesktop(int& argc, char** argv);
// Destroys every window that is left and disconnects.
void StopDesktop();

// Looks at each key message before its window gets it; true: the message is used up. It is not asked while a
// dialog or a menu is open.
using MessageFilter = std::function<bool(const MessageRecord&)>;

// Runs until PostQuitMessage, and answers its number. Termination signals (SIGTERM, SIGINT, SIGHUP) close
// `mainWindow` as a user would, after ending the dialogs over it as by Escape.
int RunMessageLoop(HWND mainWindow, const MessageFilter& filter);
void PostQuitMessage(int exitCode);
// Whether such a signal is ending the program: what closes then was closed by nobody.
bool EndsBySignal();

// Handles what waits in the event loop and returns: long work calls it now and then, so that windows are
// painted and the desktop does not take the program for dead. Anything may happen in it that may happen in
// the loop.
void RunWaitingMessages();

// Calls `ready` from the loop whenever the descriptor can be read. The descriptor stays the caller's and must
// stay open until StopDesktop.
void WatchDescriptor(int descriptor, std::function<void()> ready);

// The desktop's short sound.
void MessageBeep();
