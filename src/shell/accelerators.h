// The keys of the main window.
#pragma once

#include <span>

#include "platform/desktop/accelerator.h"

// What the main frame is told by WM_COMMAND when a key of the table "ACC" is pressed. The frame turns each
// into the command it stands for at that moment.
constexpr unsigned kAccNew = 100;
constexpr unsigned kAccFind = 101;
constexpr unsigned kAccNewFile = 102;
constexpr unsigned kAccOpenFile = 103;
constexpr unsigned kAccPrint = 104;
constexpr unsigned kAccHelp = 105;
constexpr unsigned kAccFileMenu = 106;
constexpr unsigned kAccHelpMenu = 107;
constexpr unsigned kAccFirstPane = 108;
constexpr unsigned kAccSecondPane = 109;
constexpr unsigned kAccCut = 110;
constexpr unsigned kAccCopy = 111;
constexpr unsigned kAccPaste = 112;
constexpr unsigned kAccUndo = 113;
constexpr unsigned kAccOpenAttachment = 114;
constexpr unsigned kAccEdit = 115;
constexpr unsigned kAccDelete = 116;

// A table of the program by name ("ACC"); empty when there is none.
std::span<const Accelerator> LoadAccelerators(const char* name);
