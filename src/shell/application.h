// The process: its application object, start-up, message loop and shutdown, its switches, and the notices by
// which running copies tell each other that settings changed.
#pragma once

#include <string>

#include "platform/desktop/types.h"

class ZarfWndApp;

// The one application object. Exists from before RunApplication until the end of the process.
ZarfWndApp& TheApp();

// Runs the program from its start to its end and answers the exit code. Call it once, after StartDesktop.
// `file` is the path named on the command line, empty for none. Without one only a single copy runs: when
// another copy of this module runs already, the answer is 0 at once and nothing is shown. With one, a further
// copy runs beside the first.
int RunApplication(ZarfWndApp& application, const std::string& file);
// The path that the command line named (UTF-8); empty for none.
const std::string& CommandLineFile();

// Makes the shared fonts and reads the switches: sound, animation and splash are on unless the settings say
// "0".
void LoadSettings();
// Takes sound and animation from the settings again, as numbers; a missing one stays as it is.
void ReloadSwitches();
// Whether a splash screen is wanted at start.
bool SplashEnabled();

// Codes of notices.
constexpr int kNotifySettings = 100;  // sound, animation or the refresh time changed
constexpr int kNotifySkin = 101;      // another skin was chosen

// The message in which a notice arrives at every top-level window: wParam is the code, lParam the handle of
// the window that sent it when this process did, else 0: a handle means nothing outside its process.
UINT NotifyMessage();
// Whether another copy of the program runs, of this user on this machine.
bool OtherCopiesRun();

// Sends a notice to every running copy, this one included. `senderWindow` may be null.
void BroadcastNotify(int code, HWND senderWindow);
