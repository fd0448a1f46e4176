// Sound.
#pragma once

#include <string>

// Starts playing a wave file and returns at once. Silent when the file or a sound device is missing. A sound
// that still plays is left to end.
void PlayWaveFile(const std::string& path);
