// The dialog "Internet Events": what an appointment is called as an event, and who is invited to it. It
// stores nothing; it changes the caller's record and list, which are to be given up unless it ended with OK.
// It lives on the stack for one Run.
#pragma once

#include <string>

#include "core/events/participant_list.h"
#include "framework/dialog_items.h"
#include "net/participant_rows.h"

class InternetEventsDialog : public ZarfDialog {
 public:
  // The numbers of its controls.
  enum ControlId {
    kInviteButton = 101,
    kParticipantList = 102,
    kSubjectEdit = 103,
    kRemoveButton = 105,
    kAddressBookButton = 106,
    kListArea = 107,
    kOwnerLine = 1010,  // for the owner
    kOwnerText = 1011,  // for everybody else, in place of the list
  };

  // All are borrowed. `calendar`, the record's file, tells who the user is. What is `unsaved` comes from a
  // dialog before, so that OK is there from the start.
  InternetEventsDialog(core::Appointment& record, core::ParticipantList& list,
                       const core::RecordFile& calendar, bool unsaved = false);

  // 1 for OK, 0 for Cancel. Only the owner of the event can have OK.
  int Run(ZarfWnd* owner);

  LRESULT OnInitDialog(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnAfterCreate(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;

 private:
  void ShowOwner();
  void PlaceList();
  bool HasSubject() const;
  void OnSubjectChanged();
  void Invite();
  void Remove();
  void OnOk();

  core::Appointment& appointment;
  core::ParticipantList& participants;
  const bool isOwner;
  const bool isUnsaved;
  const std::string userEmail;

  TextItem subject{*this, kSubjectEdit};
  TextItem ownerLine{*this, kOwnerLine};
  TextItem ownerText{*this, kOwnerText};
  DialogItem invite{*this, kInviteButton};
  DialogItem remove{*this, kRemoveButton};
  DialogItem ok{*this, IDOK};
  ParticipantRows rows{kParticipantList};
};
