// The list of the contacts in an address book: each on two lines, the name above the e-mail address. One that
// cannot be read, or that somebody edits, says so instead. A letter typed goes to the next name that begins
// with it.
//
// Beside what every list view tells, Insert and Delete are told as kListOwn with the key (VK_...).
#pragma once

#include "controls/list_view.h"
#include "core/contacts/contact.h"

class ContactList : public ZarfWndListView {
 public:
  explicit ContactList(int listId);

  // The record that this program edits itself; it is drawn although it is locked. None at first.
  void SetEdited(const core::RecordKey& key) { edited = key; }

  LRESULT OnCreate(const MessageRecord& record) override;
  void DrawRecordCell(core::RecordFile& book, core::RecordList& shown, HDC hdc, COLORREF colour, int index,
                      int state, const RECT& rect) override;
  std::string RecordCellText(core::RecordFile& book, core::RecordList& shown, int index) override;
  bool OnListKey(unsigned key) override;

 private:
  bool Read(core::RecordFile& book, core::RecordList& shown, int index, core::Contact& contact) const;

  const int id;
  core::RecordKey edited;
};
