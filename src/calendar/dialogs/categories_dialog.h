// The dialogs "Categories" and "New Category", in which a user edits the list of category names that a
// calendar file carries. Appointments keep the names they have.
#pragma once

#include "core/store/record_file.h"
#include "framework/zarf_wnd.h"

// The numbers of their controls.
constexpr int kCategoryList = 100;
constexpr int kNewCategoryButton = 101;
constexpr int kDeleteCategoryButton = 102;
constexpr int kNewCategoryEdit = 100;  // in "New Category"

// Shows the file's list over `owner` and stores what the user made of it: in alphabetical order, the first 29
// names. True when it was stored; false, the list as it was, when the user cancelled or may only read the
// file, which is told.
bool EditCategories(ZarfWnd* owner, core::RecordFile& file);
