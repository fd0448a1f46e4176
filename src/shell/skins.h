// Skins: small settings files in the folder "Styles" that name the pictures and the colours of the main
// frame. One is current, by "CurrSkin" in section "Preference" of Daybrix.ini. It is loaded when something
// is first drawn from it; a copy that is told of another skin (notice kNotifySkin) unloads the old one and
// paints.
//
// A skin is written by others. Whatever is missing or wrong in it is left out, and nothing is said: it draws
// nothing and breaks nothing.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "platform/desktop/bitmap.h"
#include "platform/desktop/types.h"

class ZarfWnd;

// A colour that the skin does not give. It is drawn as it stands, RGB(5, 0, 0), except where a header says
// otherwise.
constexpr COLORREF kUnsetColour = 5;

// A button's pictures by its state: normal, under the cursor, pressed.
constexpr int kButtonStates = 3;

// The pictures are null where the skin has none.
struct SkinRecord {
  std::unique_ptr<Bitmap> title;
  std::unique_ptr<Bitmap> titleLeft;
  std::unique_ptr<Bitmap> titleRight;
  std::unique_ptr<Bitmap> subTitle;
  std::unique_ptr<Bitmap> close[kButtonStates];
  std::unique_ptr<Bitmap> maximize[kButtonStates];
  std::unique_ptr<Bitmap> minimize[kButtonStates];
  std::unique_ptr<Bitmap> resize;
  COLORREF colorBack = kUnsetColour;
  COLORREF colorBackUp = kUnsetColour;
  COLORREF colorBackDown = kUnsetColour;
  COLORREF colorTitle = kUnsetColour;  // unset, without a picture: a plain colour of the frame's
  COLORREF colorTitleUp = kUnsetColour;
  COLORREF colorTitleDown = kUnsetColour;
  COLORREF colorFrame = kUnsetColour;
  COLORREF colorFrameUp = kUnsetColour;
  COLORREF colorFrameDown = kUnsetColour;
  COLORREF colorTextTitle = 0;  // a skin without it keeps that of the skin before
  COLORREF colorPanelFrame = kUnsetColour;
  bool loaded = false;
};

// The one skin record, loaded when it is not. Never null; stays the same object, whose pictures last until
// the next UnloadSkin.
SkinRecord* GetSkin();
// Frees the pictures and forgets the colours, all but the title's text colour. The next GetSkin loads.
void UnloadSkin();
void ReloadSkin();

// The file name of the current skin, at most 259 bytes; "1_Metallic.ini" when the settings name none. The
// file need not exist.
std::string CurrentSkinFile();
// Makes a skin the current one and tells every running copy, this one included; or tells the user, over
// `owner`, that the settings cannot be written.
void ChooseSkin(ZarfWnd* owner, const std::string& fileName);
// Whether a skin file of a list is the current one: letter case does not count.
bool IsCurrentSkin(const std::string& fileName);

constexpr std::size_t kMostSkins = 499;

struct SkinListEntry {
  std::string name;      // to show, in code page 1252, at most 254 bytes
  std::string fileName;  // in the skins folder
};
// The skins to choose from: files "*.ini" of the skins folder that have a name, in the order of their file
// names (letter case does not count), the first kMostSkins.
std::vector<SkinListEntry> BuildSkinList();
