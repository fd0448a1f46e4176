// Picks the times of an appointment. For a range it shows the start, which is chosen from a list that a
// button opens, and below it a track, down which a marker is dragged to the end. For a single time it shows
// the list alone.
//
// The keyboard works it as well: arrows, pages, Home and End move the range's end, F4 or Alt with the down
// arrow opens the list. A double click in the list of a single time posts the parent IDOK.
#pragma once

#include <memory>

#include "controls/spin_button.h"
#include "framework/owner_drawn.h"
#include "pickers/time_slot_list.h"
#include "pickers/time_track_geometry.h"

enum class TimePicking { kRange, kSingle };

class TimeTrack : public OwnerDrawn {
 public:
  // A range that cannot be picked becomes one that can (PickableRange). A single time is its start.
  TimeTrack(const TimeRange& shown, TimePicking what);

  const TimeRange& Times() const { return times; }

  // Gives the keyboard to what is picked with it.
  void FocusTimes();
  // Whether the list that the button opens is open and has the keyboard.
  bool ChoosesStart() const;
  // Closes it; with `take` the selected time becomes start and end.
  void CloseList(bool take);
  // Takes a single time that was selected last, also where nobody has told of it yet.
  void TakeSelection();

  void Paint(HDC hdc, const RECT& client) const override;

  int PrepareClass(WNDCLASS* windowClass) override;
  LRESULT OnCreate(const MessageRecord& record) override;
  LRESULT OnEraseBkgnd(const MessageRecord& record) override;
  LRESULT OnSize(const MessageRecord& record) override;
  LRESULT OnCommand(const MessageRecord& record) override;
  LRESULT OnLButtonDown(const MessageRecord& record) override;
  LRESULT OnMouseMove(const MessageRecord& record) override;
  LRESULT OnLButtonUp(const MessageRecord& record) override;
  LRESULT OnKeyDown(const MessageRecord& record) override;
  LRESULT OnSysKeyDown(const MessageRecord& record) override;
  void Describe(int item, AccessiblePart* part) override;
  void DoAction(AccessibleAction action, int value) override;

 protected:
  std::optional<FocusMark> FocusMarkIn(const RECT& client) const override;
  const char* CursorAt(POINT point) override;

 private:
  bool IsRange() const { return picking == TimePicking::kRange; }
  TrackLayout LayoutIn(const RECT& client) const { return {client.right, client.bottom, times}; }
  void PaintTrack(HDC hdc, const RECT& client) const;
  void OpenList();
  void OnListNotice(unsigned code, int row);
  void SetEnd(const core::TimeOfDay& end);
  void SetBoth(const core::TimeOfDay& time);

  const TimePicking picking;
  TimeRange times;
  int grip = 0;                  // of a drag: how far below the marker's handle it is held
  std::optional<int> untouched;  // of a drag that has not moved yet: the height of the handle
  bool listOpen = false;
  TimeSlotList list;
  ZarfSpinButton opener;
  std::unique_ptr<Bitmap> plate;  // from the creation of the window on
  std::unique_ptr<Bitmap> marker;
};
