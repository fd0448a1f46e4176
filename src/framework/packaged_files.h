// Files of packaging/, which the build puts into the program letter for letter.
#pragma once

extern const char* const kMimePackage;   // tempoline-mime.xml
extern const char* const kDesktopEntry;  // tempoline.desktop
