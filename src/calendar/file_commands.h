// The commands of the File menu that deal with calendar files as a whole. Each shows its dialogs and messages
// over `owner`, the frame, and, when it comes to nothing, leaves everything as it was.
#pragma once

#include <string>

#include "core/calendar/calendar_file.h"
#include "core/calendar/calendar_session.h"

class ZarfWnd;

// Asks for a name, makes a calendar there and opens it in place of the open one.
void NewFileCommand(core::CalendarSession& session, ZarfWnd* owner);
// Asks for a calendar, and for its password if it has one, and opens it in place of the open one.
void OpenFileCommand(core::CalendarSession& session, ZarfWnd* owner);
// Lets the owner of the open calendar set its passwords, each typed twice.
void NetworkPasswordsCommand(core::CalendarSession& session, ZarfWnd* owner);
// Asks for a path and puts a compacted copy of the open calendar there. The open one stays the open one.
void SaveAsCommand(core::CalendarSession& session, ZarfWnd* owner);
// Asks for a calendar that nobody has open, and compacts it.
void CompactCommand(ZarfWnd* owner);

// Makes a calendar with the dialog for it, under which `note` (UTF-8, may be empty) says why, opens it and
// notes it down for the next start; or tells why it was not opened. False when the user cancelled.
bool CreateAndOpen(core::CalendarSession& session, ZarfWnd* owner, const std::string& note);
