#include "calendar/window_host.h"

#include "calendar/dialogs/appointment_editor.h"
#include "framework/notices.h"
#include "framework/services.h"
#include "framework/shell_services.h"
#include "net/internet_events_dialog.h"
#include "platform/desktop/application.h"

bool WindowHost::EditRecord(core::Appointment& record, bool isNew) {
  using Mode = AppointmentEditor::Mode;
  AppointmentEditor editor(*session.File(), record, session.CurrentDate(), isNew ? Mode::kNew : Mode::kEdit,
                           session.Filter());
  return editor.Run(&window) == 1;
}

bool WindowHost::ChooseParticipants(core::Appointment& record, core::ParticipantList& participants,
                                    bool isUnsaved) {
  return InternetEventsDialog(record, participants, *session.File(), isUnsaved).Run(&window) == 1;
}

bool WindowHost::Ask(int question) {
  return AskYesNo(&window, question);
}

void WindowHost::Tell(int text) {
  ShowInfoId(&window, text);
}

void WindowHost::Tell(const std::string& text) {
  ShowInfo(&window, text);
}

void WindowHost::Beep() {
  MessageBeep();
}

void WindowHost::Play(const char* sound) {
  PlaySound(sound);
}

void WindowHost::OpenTarget(const std::string& target) {
  OpenOrTell(&window, target);
}

void WindowHost::SelectRecord(const core::Appointment& record) {
  list.SelectRecord(record.header.recordId);
}
