// How the desktop learns that calendar files are the program's.
#pragma once

#include <string>

// Tells the user's desktop of the files with an extension ("cld", without the dot): their type with its name
// and icon, and this executable as the program that opens them. It writes below $XDG_DATA_HOME
// (~/.local/share) what is missing or different there, and has the desktop look again only if it wrote
// something. Always true: what fails is left.
//
// Nothing is written where it would do harm: with DAYBRIX_FOLDER set the program is carried about or under
// test and leaves no traces outside that folder, and an installed program was made known by its package.
bool RegisterFileType(const std::string& extension);
