#include "platform/desktop/sound.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QLibrary>

#include "platform/desktop/qt/sound_module.h"

namespace {

using PlayWave = void (*)(const char* path);

// Null when the module is not installed: the program is then silent.
PlayWave LoadModule() {
  const QString folder = QCoreApplication::applicationDirPath();
  for (const QString& place : {folder, folder + QStringLiteral("/../lib/daybrix")}) {
    QLibrary library(place + QStringLiteral("/lib") + QLatin1String(kSoundModule));
    if (library.load()) return reinterpret_cast<PlayWave>(library.resolve(kPlayWaveSymbol));
  }
  return nullptr;
}

}  // namespace

void PlayWaveFile(const std::string& path) {
  if (!QFileInfo::exists(QString::fromStdString(path))) return;
  static const PlayWave play = LoadModule();
  if (play != nullptr) play(path.c_str());
}
