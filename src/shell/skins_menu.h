// The pop-up menu by which a right click on the main frame changes the skin.
#pragma once

class ZarfWnd;

// Lists what is in the skins folder at that moment in a menu at the cursor, the current skin checked and
// greyed; nothing opens when there is no skin. The choice is posted to the owner as WM_COMMAND with
// ID_FIRST_SKIN + its place in the menu.
void ShowSkinsMenu(ZarfWnd& owner);

// Makes the skin at a place of the last menu the current one and tells every running copy, this one included.
// A place that is not in it is ignored. `owner` is what a failure is told over.
void SelectSkin(ZarfWnd* owner, int index);
