// Dialogs made from templates. A template is a numbered form whose controls carry numbers; typing, selection,
// clipboard, input methods, keyboard navigation and screen readers are the desktop's own. The dialog
// procedure is told what happens (WM_SETFONT first, then WM_INITDIALOG, then WM_COMMAND and so on) and
// answers 0 for what it leaves to the layer: closing the dialog by its button or by Escape then becomes
// WM_COMMAND IDCANCEL.
//
// Controls are told by number (SendDlgItemMessage) and report by WM_COMMAND: low word their number, high word
// what happened. Texts are in code page 1252; a character that it lacks is left out of what is typed or
// pasted, and a tip at the field says so. Only what
// names a file may hold any character (SetDlgItemPath and the like).
#pragma once

#include <string>

#include "platform/desktop/types.h"

using DialogProcedure = LRESULT (*)(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);

// Opens a dialog over `owner` (may be null) and runs it until EndDialog; answers its result, or -1 when there
// is no such template. While it runs the owner takes no input, but timers and posted messages go on.
int DialogBox(int templateId, HWND owner, DialogProcedure procedure);
// Opens a dialog that stays beside the rest until DestroyWindow; null when there is no such template.
HWND CreateDialog(int templateId, HWND owner, DialogProcedure procedure);
// Ends a dialog that DialogBox runs. The dialog is gone when DialogBox returns.
bool EndDialog(HWND dialog, int result);

// Takes the title bar and the border from a dialog. Only while WM_INITDIALOG is handled.
void SetDialogFrameless(HWND dialog);

// Keeps every other window of the program from input for as long as the dialog is open. Only while
// WM_INITDIALOG is handled. A dialog that DialogBox runs does so by itself.
void BlockOtherWindows(HWND dialog);

// The control with a number; null when there is none. One that is hidden (ShowWindow) keeps its place free.
HWND GetDlgItem(HWND dialog, int id);
bool SetDlgItemText(HWND dialog, int id, const char* text);
// Copies a control's text, cut to size - 1 bytes and always terminated; answers the bytes copied. Line ends
// in an edit are carriage return and line feed. A text that the user has not touched comes back byte for byte
// as it was set.
int GetDlgItemText(HWND dialog, int id, char* buffer, int size);
// The same for what names a file, in the file system's encoding. An edit takes any character where its
// template gives it the dynamic property `anyCharacter`. A label shows what its width has room for, cut in
// the middle.
void SetDlgItemPath(HWND dialog, int id, const std::string& path);
std::string GetDlgItemPath(HWND dialog, int id);
// The title of the dialog, in the same encoding.
void SetDialogTitle(HWND dialog, const std::string& title);
void CheckDlgButton(HWND dialog, int id, bool checked);
bool IsDlgButtonChecked(HWND dialog, int id);
LRESULT SendDlgItemMessage(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);

// What can be sent to controls. Indices start at 0; -1 (kControlError) is the answer for none and for a wrong
// control.
constexpr LRESULT kControlError = -1;
constexpr UINT EM_LIMITTEXT = 0x00C5;      // wParam: most bytes the user can type; a text set stays whole
constexpr UINT WM_GETTEXTLENGTH = 0x000E;  // answers bytes
// A control takes WM_SETFONT as well, with an HFONT in wParam, which it does not keep.
constexpr UINT PBM_SETPOS = 0x0402;       // wParam: how far a progress bar is
constexpr UINT PBM_SETRANGE32 = 0x0406;   // wParam: where it begins, lParam: where it ends
constexpr UINT CB_ADDSTRING = 0x0143;     // lParam: text; answers its index
constexpr UINT CB_RESETCONTENT = 0x014B;  // empties list and edit field
constexpr UINT CB_GETCOUNT = 0x0146;
constexpr UINT CB_GETCURSEL = 0x0147;
constexpr UINT CB_SETCURSEL = 0x014E;        // wParam: index, -1 for none
constexpr UINT CB_FINDSTRINGEXACT = 0x0158;  // lParam: text; letter case counts
constexpr UINT LB_ADDSTRING = 0x0180;        // lParam: text; answers its index
constexpr UINT LB_DELETESTRING = 0x0182;     // wParam: index; answers how many are left, none is selected
constexpr UINT LB_RESETCONTENT = 0x0184;
constexpr UINT LB_SETCURSEL = 0x0186;  // wParam: index, -1 for none
constexpr UINT LB_GETCURSEL = 0x0188;
constexpr UINT LB_GETTEXT = 0x0189;     // wParam: index, lParam: room for LB_GETTEXTLEN + 1 bytes
constexpr UINT LB_GETTEXTLEN = 0x018A;  // wParam: index; answers bytes
constexpr UINT LB_GETCOUNT = 0x018B;

// What controls report in the high word of WM_COMMAND; lParam is the control's handle.
constexpr unsigned BN_CLICKED = 0;
constexpr unsigned EN_CHANGE = 0x0300;
constexpr unsigned CBN_SELCHANGE = 1;
constexpr unsigned CBN_EDITCHANGE = 5;
constexpr unsigned LBN_SELCHANGE = 1;  // the user selected, be it what was selected
constexpr unsigned LBN_DBLCLK = 2;     // comes after LBN_SELCHANGE
