#include "controls/list_refresh.h"

#include <algorithm>
#include <vector>

#include "controls/list_view.h"
#include "core/record_file.h"

namespace {

std::vector<ZarfWndListView*>& Views() {
  static std::vector<ZarfWndListView*> views;
  return views;
}

bool IsRegistered(ZarfWndListView* view) {
  return std::find(Views().begin(), Views().end(), view) != Views().end();
}

}  // namespace

bool RegisterListView(ZarfWndListView* view) {
  if (Views().size() >= kMaxListViews) return false;
  Views().push_back(view);
  return true;
}

void ForgetListView(ZarfWndListView* view) {
  std::erase(Views(), view);
}

int RegisteredListViews() {
  return static_cast<int>(Views().size());
}

void RefreshListViews() {
  // A parent that is told of a change may open a box, inside which the timers go on, or take list views away.
  static bool running = false;
  if (running) return;
  running = true;
  for (ZarfWndListView* view : std::vector<ZarfWndListView*>(Views())) {
    if (core::RefreshEnabled() && IsRegistered(view)) view->RefreshFromFile(ListRefresh::kByTimer);
  }
  running = false;
}

void RearmListViews() {
  for (ZarfWndListView* view : Views()) view->ArmRefreshTimer();
}
