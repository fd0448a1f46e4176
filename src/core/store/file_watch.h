// Looks after open files for changes that others make. Whoever shows something of a file registers as a
// watcher; one timer of the process calls Look, which asks each file once and tells all its watchers what it
// found. Nothing is told while this process holds an edit lock: lists are not rebuilt under an open editor.
#pragma once

#include <cstdint>
#include <vector>

#include "core/store/record_file.h"

namespace core {

// What a look at a file found.
struct FileLook {
  bool counted = false;  // whether the change counter could be read
  std::uint64_t changeCounter = 0;
  platform::FileAtPath atPath = platform::FileAtPath::kUnknown;
};

class FileWatcher {
 public:
  // The file to look at; null for none at the moment.
  virtual const RecordFile* WatchedFile() const = 0;
  // A watcher may do here what it likes, add and remove watchers, close its file or run a loop included.
  virtual void OnLook(const FileLook& look) = 0;

 protected:
  ~FileWatcher() = default;
};

class FileWatch {
 public:
  // The one of the process.
  static FileWatch& OfProcess();

  // A watcher stays the caller's and must be removed before it ends.
  void Add(FileWatcher& watcher) { watchers.push_back(&watcher); }
  void Remove(FileWatcher& watcher) { std::erase(watchers, &watcher); }

  // Does nothing inside another look: a watcher that is told may run a loop in which the timer goes on.
  void Look();

 private:
  std::vector<FileWatcher*> watchers;  // borrowed
  bool looking = false;
};

// When to try again what has failed: after a second, and each time twice as long after that, up to a minute.
class RetryPause {
 public:
  bool IsOver() const;
  void Lengthen();
  void Reset() { *this = RetryPause(); }

 private:
  std::int64_t until = 0;  // platform::TickMs
  std::int64_t next = 1000;
};

}  // namespace core
