#include "framework/compaction_progress.h"

#include <memory>

#include "core/store/file_messages.h"
#include "framework/progress_window.h"

core::CompactionWatcher ShowCompaction(ZarfWnd* owner) {
  const auto window = std::make_shared<ProgressWindow>();
  return {
      .begin =
          [window, owner](const std::string& path, std::uint32_t slots) {
            const std::string title = path.substr(path.rfind('/') + 1);
            window->Begin(owner, "Compacting " + core::Quoted(title), slots);
          },
      .slotExamined = [window] { window->Step(); },
      .end = [window] { window->Close(); },
  };
}
