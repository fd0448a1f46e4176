// Stands in for the module that plays sounds: leaves a file beside each one it is asked to play.
#include <cstdio>
#include <string>

extern "C" [[gnu::visibility("default")]] void PlayWaveInModule(const char* path);

void PlayWaveInModule(const char* path) {
  if (std::FILE* mark = std::fopen((std::string(path) + ".played").c_str(), "w")) std::fclose(mark);
}
