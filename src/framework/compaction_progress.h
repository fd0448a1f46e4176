// Shows the user how far a compaction is.
#pragma once

#include "core/store/compaction.h"

class ZarfWnd;

// For whoever compacts, or opens, a record file. The window stands over `owner`, which must outlive the work,
// and shows only when there is work to do.
core::CompactionWatcher ShowCompaction(ZarfWnd* owner);
