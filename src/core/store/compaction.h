// Rewrites a record file without its free slots, which is also how a file that a dead program left behind is
// brought in order: the live records keep their contents and their order, lose their edit locks and get new
// offsets. The path names one whole file at every instant, the old one until the new one is on the disk.
//
// Nobody else may have the file open. Where locks do not reach everybody who may
// (platform::File::LocksReach), a file counts as open while its open count says so.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/store/record_file.h"

namespace core {

// Follows a compaction that has work to do. An empty function is not called.
struct CompactionWatcher {
  std::function<void(const std::string& path, std::uint32_t slots)> begin;  // of the file that is written
  std::function<void()> slotExamined;                                       // once for each slot
  std::function<void()> end;                                                // after begin, come what may
};

struct RepairOutcome {
  bool clean = false;    // the file is in order now: it was clean, or it was compacted
  std::string message;   // for the user; also, though clean, when something was found and put aside
  bool inUse = false;    // not clean because somebody has the file open
  bool counted = false;  // and that is only what its open count says, where no lock can tell
};

// Brings the file in order before it is opened: compacts it when a program that is gone left it open, and
// resets its open count and its balance of free slots. Writes nothing to a clean file. With `force` it
// compacts every file that nobody has open. A file that is no record file is left alone.
//
// What a dead compaction left beside the file is removed if nothing in it is the only copy of anything, and
// else kept under a name that nobody has. So are the bytes of slots that are neither live nor free, and those
// of a last record that the end of the file cuts off. The message tells the names.
[[nodiscard]] RepairOutcome RepairCheck(const std::string& path, bool force,
                                        const CompactionWatcher& watcher = {});

// Compacts a file also where its open count is all that speaks against it. For who knows that nobody has the
// file open, or that whoever does will find it replaced.
[[nodiscard]] RepairOutcome CompactCounted(const std::string& path, const CompactionWatcher& watcher = {});

// Writes a compacted copy of an open file to `target`, replacing a file that is there and that nobody has
// open. What is in `source` stays as it is, and is copied also when the path no longer names it. The copy
// counts as opened by nobody.
[[nodiscard]] RepairOutcome SaveCopy(RecordFile& source, const std::string& target,
                                     const CompactionWatcher& watcher = {});

}  // namespace core
