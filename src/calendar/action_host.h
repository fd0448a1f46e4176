// What a command on appointments asks of the window it runs over.
#pragma once

#include <string>

#include "core/calendar/appointment.h"
#include "core/events/participant_list.h"

class ActionHost {
 public:
  // Runs the editor on a record; `isNew` makes it a new appointment of the session's day first. True for OK,
  // with the record as the user left it.
  virtual bool EditRecord(core::Appointment& record, bool isNew) = 0;
  // Has the participants of an event, and what it is called, chosen; `isUnsaved` when they come back from a
  // choice that could not be stored. True for OK, with both as the user left them.
  virtual bool ChooseParticipants(core::Appointment& record, core::ParticipantList& participants,
                                  bool isUnsaved) = 0;
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
