// What the commands on appointments do, from the question to the sound: each is a function over the session
// and a host, the window that the user gave the command to. A command runs inside a CommandScope, on the
// record that the user saw selected.
#pragma once

#include <string>

#include "core/calendar/appointment.h"
#include "core/calendar/calendar_session.h"
#include "core/events/participant_list.h"

// What a command asks of the window it runs over.
class ActionHost {
 public:
  // Runs the editor on a record; `isNew` makes it a new appointment of the session's day first. True for OK,
  // with the record as the user left it.
  virtual bool EditRecord(core::Appointment& record, bool isNew) = 0;
  // Has the participants of an event, and what it is called, chosen. True for OK, with both as the
  // user left them.
  virtual bool ChooseParticipants(core::Appointment& record, core::ParticipantList& participants) = 0;
  virtual bool Ask(int question) = 0;  // a text's number; true for Yes
  virtual void Tell(int text) = 0;
  virtual void Tell(const std::string& text) = 0;
  virtual void Beep() = 0;
  virtual void Play(const char* sound) = 0;
  // A document, folder or address that a record holds, with whatever the desktop opens it with.
  virtual void OpenTarget(const std::string& target) = 0;
  virtual void SelectRecord(const core::Appointment& record) = 0;
  // Whether the program waits for this command in order to end.
  virtual bool IsEnding() const = 0;

 protected:
  ~ActionHost() = default;
};

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
