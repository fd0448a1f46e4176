// The popup menu of the day list: what can be done with an appointment, or beside one.
#pragma once

#include "platform/desktop/types.h"

// What there is to work on; an item that lacks it is greyed.
struct AppointmentMenuState {
  bool onRecord = false;       // the menu was asked for on an appointment ...
  bool hasAttachment = false;  // ... that has one
  bool canUndo = false;        // something is in the bin
  bool canPaste = false;       // something is on the clipboard
};

// Opens the menu at a screen point. The chosen command, one of shell/commands.h, is posted to `owner`.
void TrackAppointmentMenu(HWND owner, POINT screenPoint, const AppointmentMenuState& state);
