// Import from an iCalendar file, as the command does it: reads the file, shows what it comes to, asks, and
// brings it into the calendar.
#pragma once

#include <string>

#include "core/store/record_file.h"
#include "exchange/import_progress.h"

// Into an open calendar that the user may change. Nothing is to be told to who cancelled before anything was
// written.
Imported ImportIcal(core::RecordFile& file, ZarfWnd* owner, const std::string& path);
