// How commands on appointments begin, and what their users are told of what came of them.
#pragma once

#include "calendar/action_host.h"
#include "core/calendar/calendar_session.h"
#include "core/events/event_commands.h"

// Whether a command that changes records may begin on the selected one; tells why not.
bool MayBegin(core::CalendarSession& session, ActionHost& host, const core::RecordKey& selected);

// Tells what came of a command; a silent result is silent. `failed` is added to what failed.
void Report(const core::CalendarSession& session, ActionHost& host, core::CommandResult result,
            const char* failed);
// The same for a command that holds no edit lock any more: when it failed because the file is no longer the
// one at its path, that one is opened now.
void ReportAndLook(core::CalendarSession& session, ActionHost& host, core::CommandResult result,
                   const char* failed);
// The same of a command in which the participants of an event may have failed.
void Report(const core::CalendarSession& session, ActionHost& host, const core::EventOutcome& outcome,
            const char* failed);
void ReportAndLook(core::CalendarSession& session, ActionHost& host, const core::EventOutcome& outcome,
                   const char* failed);

// Whether a command failed because the file is no longer the one at its path.
bool IsFileLost(const core::RecordFile& file, core::CommandResult result);
