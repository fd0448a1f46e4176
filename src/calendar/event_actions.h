// What commands on appointments do for internet events: who takes part in one has to hear of its changes, and
// of its end.
#pragma once

#include "calendar/action_host.h"
#include "core/calendar/calendar_session.h"
#include "core/events/event_commands.h"

// Has the participants of the selected appointment chosen, which is an event from then on. Without one it
// beeps.
void InternetEventsCommand(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected);

// To be called before an edited record is stored. Of an event it asks whether the participants are to be
// told, and if so marks them and the record. False when that failed, which was told.
[[nodiscard]] bool NotifyOfChange(ActionHost& host, const core::RecordFile& file, core::Appointment& record);

// Deletes the record whose lock is held, and gives the lock back. Of an event it asks whether the
// participants are to be told; it then stays as a cancelled one. `record` is what was deleted.
[[nodiscard]] core::EventOutcome DeleteAndNotify(ActionHost& host, core::EditLock& lock,
                                                 core::Appointment& record);
