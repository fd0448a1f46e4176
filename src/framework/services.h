// Small services of the shell that windows use: sounds, the wait cursor, placing a window, dragging between
// windows.
#pragma once

#include <string>

#include "platform/desktop/types.h"

// Whether sounds are played and animations shown. On at first; the settings and other running copies change
// them.
bool SoundEnabled();
bool AnimationEnabled();
void SetSoundEnabled(int enabled);
void SetAnimationEnabled(int enabled);

// The sounds of the program: files of the program folder.
constexpr UINT SND_ASYNC = 1;
constexpr UINT SND_NODEFAULT = 2;
// Starts a wave file and returns. Silent while sound is off (the file is then not even opened) or when it is
// missing.
void PlaySound(const char* fileName, UINT flags = SND_ASYNC | SND_NODEFAULT);

// Starts a wave file of the user's, by its whole path, whether sound is on or off. False when it cannot be
// played, which the user should be told of.
[[nodiscard]] bool PlayTone(const std::string& path);

void BeginWaitCursor();
void EndWaitCursor();

// Moves `window` over the middle of `owner` (null: the desktop), kept on the screen that has the owner.
void CenterOver(HWND owner, HWND window);

// Dragging between windows. The window under the cursor is asked by WM_COMMAND 1020 whether it takes a drop
// there and is told of one by 1021 (move) or 1022 (copy); lParam points to the screen position (const
// POINT*).
constexpr unsigned kDropQuery = 1020;
constexpr unsigned kDropMove = 1021;
constexpr unsigned kDropCopy = 1022;

struct DragRecord {
  HWND source;     // the window the drag began in
  unsigned keys;   // MK_... flags of the mouse message
  POINT position;  // in the source's client pixels
};
// Shows whether the window under the cursor would take the drop.
void DragFeedback(const DragRecord& drag);
// Whether the main window that a window belongs to is the one in front: with a dialog or another program
// there, nothing may be dropped.
bool IsInForeground(HWND window);
// Drops. Over the source itself nothing is sent.
void DragDrop(const DragRecord& drag);
