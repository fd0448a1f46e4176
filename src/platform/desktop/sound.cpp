#include "platform/desktop/sound.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLibrary>

#include "platform/desktop/qt/sound_module.h"

namespace {

using PlayWave = void (*)(const char* path);

// Null when the module is not installed: the program is then silent.
PlayWave LoadModule() {
  const QString folder = QCoreApplication::applicationDirPath();
  for (const QString& place : {folder, folder + QStringLiteral("/" MODULES_FROM_PROGRAM)}) {
    QLibrary library(place + QStringLiteral("/lib") + QLatin1String(kSoundModule));
    if (library.load()) return reinterpret_cast<PlayWave>(library.resolve(kPlayWaveSymbol));
  }
  return nullptr;
}

// Whether the file begins as a wave file does. What is no plain file, a pipe for example, is not opened: that
// could wait for ever.
bool IsWaveFile(const QString& path) {
  if (!QFileInfo(path).isFile()) return false;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return false;
  const QByteArray start = file.read(12);
  return start.startsWith("RIFF") && start.endsWith("WAVE");
}

}  // namespace

bool PlayWaveFile(const std::string& path) {
  if (!IsWaveFile(QFile::decodeName(path.c_str()))) return false;
  static const PlayWave play = LoadModule();
  if (play != nullptr) play(path.c_str());
  return true;
}
