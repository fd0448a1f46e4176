// The command that sets up the user's account on the event server.
#pragma once

#include "core/store/record_file.h"

class ZarfWnd;

// Lets the Owner of a calendar set the account up, after its password if one is set, and puts the event
// server's address into the calendar, for whoever delivers its invitations. Everything is told over `owner`.
// Without a calendar (null), and where somebody else owns it, the user is told that he may not. 1 when the
// setup ended with OK, also when the calendar could not be written, else 0.
int ServerSetupCommand(core::RecordFile* calendar, ZarfWnd* owner);
