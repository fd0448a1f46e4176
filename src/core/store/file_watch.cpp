#include "core/store/file_watch.h"

#include <algorithm>
#include <utility>

#include "platform/system/clock.h"

namespace core {
namespace {

constexpr std::int64_t kLongestPauseMs = 60'000;

FileLook LookAt(const RecordFile& file) {
  FileLook look;
  look.atPath = file.PathState();
  look.counted = file.ReadChangeCounter(look.changeCounter);
  return look;
}

}  // namespace

FileWatch& FileWatch::OfProcess() {
  static FileWatch watch;
  return watch;
}

void FileWatch::Look() {
  if (std::exchange(looking, true)) return;
  std::vector<std::pair<const RecordFile*, FileLook>> looks;
  for (FileWatcher* watcher : std::vector<FileWatcher*>(watchers)) {
    if (!RefreshEnabled()) break;
    if (std::find(watchers.begin(), watchers.end(), watcher) == watchers.end()) continue;
    const RecordFile* file = watcher->WatchedFile();
    if (file == nullptr) continue;
    auto found =
        std::find_if(looks.begin(), looks.end(), [&](const auto& look) { return look.first == file; });
    if (found == looks.end()) found = looks.insert(looks.end(), {file, LookAt(*file)});
    // By value: the next look at another file may move them.
    watcher->OnLook(FileLook(found->second));
  }
  looking = false;
}

bool RetryPause::IsOver() const {
  return until == 0 || platform::TickMs() >= until;
}

void RetryPause::Lengthen() {
  until = platform::TickMs() + next;
  next = std::min(2 * next, kLongestPauseMs);
}

}  // namespace core
