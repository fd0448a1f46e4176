// The host of commands on appointments that a window is to them: the editor, questions and notices stand over
// it, and what a command made or changed is selected in its list. The panel and the Find dialog have one
// each.
#pragma once

#include "calendar/action_host.h"
#include "calendar/command_gate.h"
#include "controls/list_view.h"
#include "core/calendar/calendar_session.h"

class WindowHost final : public ActionHost {
 public:
  // All must outlive the host; the window and the list may be made later.
  WindowHost(ZarfWnd& hostWindow, ZarfWndListView& hostList, core::CalendarSession& calendarSession,
             const CommandGate& commandGate)
      : window(hostWindow), list(hostList), session(calendarSession), gate(commandGate) {}

  bool EditRecord(core::Appointment& record, bool isNew) override;
  bool ChooseParticipants(core::Appointment& record, core::ParticipantList& participants,
                          bool isUnsaved) override;
  bool Ask(int question) override;
  void Tell(int text) override;
  void Tell(const std::string& text) override;
  void Beep() override;
  void Play(const char* sound) override;
  void OpenTarget(const std::string& target) override;
  void SelectRecord(const core::Appointment& record) override;
  bool IsEnding() const override { return gate.CloseWanted(); }

 private:
  ZarfWnd& window;
  ZarfWndListView& list;
  core::CalendarSession& session;
  const CommandGate& gate;
};
