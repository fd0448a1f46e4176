// Edits in dialogs for fields of a record that name a file or an address. Such a field holds bytes of the
// file system's encoding and need not end with a terminator.
#pragma once

#include "framework/dialog_items.h"

// Shows the field, with room for as much as it holds.
template <std::size_t kSize>
void ShowPathField(const TextItem& edit, const char (&field)[kSize]) {
  edit.LimitTo(kSize);
  edit.SetPath(std::string(core::ReadText(field)));
}

// Whether the edit's text fits into a field of that many bytes; one that does not is told of, and gets the
// keyboard. Characters may take more than one byte, so that typing cannot keep it short enough.
[[nodiscard]] bool CheckPathFits(ZarfWnd* dialog, const TextItem& edit, std::size_t bytes);

// Stores a text that fits.
template <std::size_t kSize>
void TakePathField(const TextItem& edit, char (&field)[kSize]) {
  core::WriteText(field, edit.Path());
}

// Asks for a file that exists, and puts its path into the edit.
void BrowseInto(HWND dialog, const TextItem& edit, const char* filter);
