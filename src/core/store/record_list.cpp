#include "core/store/record_list.h"

#include <algorithm>

namespace core {
namespace {

constexpr int kLongestPause = 63;

}  // namespace

bool RecordList::RefreshIfChanged(const RecordFile& file, const std::function<void()>& beforeRebuild) {
  std::uint64_t counter = 0;
  if (!CanRebuild() || !file.ReadChangeCounter(counter) || counter == stamp) return false;
  if (stamp == kNoStamp && counter == counterAtRun && callsLeft > 0) {
    --callsLeft;
    return false;
  }
  if (beforeRebuild) beforeRebuild();
  const bool made = Rebuild(file);
  // What changed while the list was being made must not count as seen.
  stamp = made && whole ? counter : kNoStamp;
  // What was not read whole is tried again, but not at every look: a failing disk takes long to fail.
  pause = whole ? 0 : std::min(pause * 2 + 1, kLongestPause);
  callsLeft = pause;
  return made;
}

}  // namespace core
