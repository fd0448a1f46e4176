// What the commands on appointments do, from the question to the sound: each is a function over the session
// and a host, the window that the user gave the command to. A command runs inside a CommandScope, on the
// record that the user saw selected.
#pragma once

#include "calendar/action_host.h"
#include "core/calendar/calendar_session.h"

// Without a file it beeps.
void NewCommand(core::CalendarSession& session, ActionHost& host);
// The key is that of the selected record, from when its row was listed. Without one, these do nothing.
void EditCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected);
void DeleteCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected);
void OpenAttachmentCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected);
// Without a word when somebody edits the record.
void CutCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected);
void CopyCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected);

// Adds what is on the clipboard to the session's day; nothing when that is empty. It stays there.
void PasteCommand(core::CalendarSession& session, ActionHost& host);
// Adds what is in the bin again and shows its day; nothing when that is empty.
void UndoDeleteCommand(core::CalendarSession& session, ActionHost& host);
// Reads the selected record as it is now; tells why when that is not possible.
[[nodiscard]] bool ReadSelected(core::CalendarSession& session, ActionHost& host,
                                const core::RecordKey& selected, core::Appointment& record);
// Shows the day of a record and selects it there.
void GoToCommand(core::CalendarSession& session, ActionHost& host, const core::Appointment& record);

// Deletes the selected record without a question, as it was dropped on the bin: true when it is gone. Without
// one it beeps.
bool DropOnBinCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected);
// Gives the selected record, or a copy of it, the day it was dropped on, which is then shown. Without one it
// beeps.
void DropCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected, bool copy,
                 core::Date date);
