// Sound.
#pragma once

#include <string>

// Starts playing a wave file and returns at once; a sound that still plays is left to end. False when there
// is no such file, or it cannot be read or is no wave file. Without a sound device it is true, and silent.
bool PlayWaveFile(const std::string& path);
