// What keeps lists of shared files up to date: the list views of the process, at most 100 of them, and one
// look at all their files. Every list view's timer calls for it.
#pragma once

class ZarfWndListView;

constexpr int kMaxListViews = 100;

// Puts a list view at the end of the registry; false when it is full: the view is then never refreshed by
// itself.
bool RegisterListView(ZarfWndListView* view);
// Takes it out; those after it move up. Nothing happens when it is not in.
void ForgetListView(ZarfWndListView* view);
int RegisteredListViews();

// Refreshes each registered list view whose file others have changed. Does nothing while
// core::RefreshEnabled() is false: somebody here edits a record.
void RefreshListViews();

// Starts the timers of all registered list views anew with the period that the settings now name.
void RearmListViews();
