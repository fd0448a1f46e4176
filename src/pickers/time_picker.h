// The dialog "Time": picks the start and the end of an appointment, or a single time.
#pragma once

#include "pickers/picker_dialog.h"
#include "pickers/time_track.h"

class TimePickerDialog : public PickerDialog {
 public:
  // Starts with a range, or with a single time, its start. Where that cannot be picked it starts with the
  // first time that can.
  TimePickerDialog(const TimeRange& start, TimePicking picking) : track(start, picking) {}

  // True when the user accepted the times. A single time is both start and end.
  bool Run(ZarfWnd* owner);
  const TimeRange& Times() const { return track.Times(); }

  LRESULT OnCommand(const MessageRecord& record) override;

 protected:
  ZarfWnd& Content() override { return track; }
  void FocusContent() override { track.FocusTimes(); }
  int Margin() const override;

 private:
  TimeTrack track;
};
