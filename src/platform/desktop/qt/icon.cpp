#include "platform/desktop/qt/icon.h"

#include <QPixmap>

#include "platform/desktop/qt/bitmap_pixels.h"

QIcon LoadIcon(const char* name) {
  QIcon icon;
  for (const int size : {16, 32, 48, 64, 128}) {
    const QImage image = LoadBuiltInImage(QStringLiteral("%1-%2").arg(QString::fromLatin1(name)).arg(size));
    if (!image.isNull()) icon.addPixmap(QPixmap::fromImage(image));
  }
  return icon;
}
