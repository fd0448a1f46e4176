// The commands by which appointments leave and enter the open calendar. Each shows its dialogs and messages
// over `owner`, the frame, runs inside a CommandScope, and beeps where no calendar is open.
#pragma once

#include <cstdint>
#include <optional>

#include "core/calendar/calendar_session.h"
#include "exchange/range_dialog.h"

// Writes appointments to a file that the user names.
void ExportCommand(core::CalendarSession& session, ZarfWnd* owner, ExchangeChoices& choices);
// Adds the appointments of a file that the user names. A Reader is refused.
void ImportCommand(core::CalendarSession& session, ZarfWnd* owner);
// Makes, shows and prints a report. `selected`: the id of the selected appointment.
void ReportCommand(core::CalendarSession& session, ZarfWnd* owner, ExchangeChoices& choices,
                   std::optional<std::uint64_t> selected);
