// What the two ways to import have in common.
#pragma once

#include <cstdint>
#include <string>

#include "core/store/command_result.h"
#include "framework/progress_window.h"
#include "framework/services.h"

// What an import came to.
struct Imported {
  std::string message;   // for the user
  bool changed = false;  // the calendar is another than before
  core::CommandResult result = core::CommandResult::kDone;
};

// Does some work on the file at `path` under a window that shows how far it is and lets the user cancel it:
// `work` takes an ExchangeProgress. Answers what it answers.
template <typename Work>
auto UnderProgress(ZarfWnd* owner, const std::string& path, const Work& work) {
  ProgressWindow progress;
  progress.BeginCancellable(owner, "Import...", path);
  BeginWaitCursor();
  auto result =
      work([&progress](std::int64_t done, std::int64_t whole) { return progress.Advance(done, whole); });
  EndWaitCursor();
  return result;
}
