// What the sound module offers, and the name it is found by beside the executable or in ../lib/daybrix.
#pragma once

constexpr const char* kSoundModule = "tempoline_sound";
constexpr const char* kPlayWaveSymbol = "PlayWaveInModule";

extern "C" {
// Plays a wave file (UTF-8 path) and returns at once.
[[gnu::visibility("default")]] void PlayWaveInModule(const char* path);
}
