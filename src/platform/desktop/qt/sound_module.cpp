// The part of the layer that links the sound library. It is a shared object of its own, loaded when the first
// sound is to be heard: the sound library brings two dozen others with it, which would double the time to the
// first window.
#include "platform/desktop/qt/sound_module.h"

#include <QAudioDevice>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QUrl>
#include <map>
#include <memory>

void PlayWaveInModule(const char* path) {
  if (QMediaDevices::defaultAudioOutput().isNull()) return;
  const QString file = QString::fromUtf8(path);
  // An effect never says that it ended when the device vanishes, so each file keeps its own for the life of
  // the process.
  static std::map<QString, std::unique_ptr<QSoundEffect>> effects;
  auto& effect = effects[file];
  if (effect == nullptr) {
    effect = std::make_unique<QSoundEffect>();
    effect->setSource(QUrl::fromLocalFile(file));
  }
  effect->play();
}
