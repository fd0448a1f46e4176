// The pixels of a picture.
#pragma once

#include <QImage>

#include "platform/desktop/bitmap.h"

struct Bitmap::Pixels {
  QImage image;  // ARGB32, with its device pixel ratio set
};

struct BitmapAccess {
  static const QImage& ImageOf(const Bitmap& bitmap) { return bitmap.pixels->image; }
};

// A built-in picture in the resolution that suits the screens; null when there is none.
QImage LoadBuiltInImage(const QString& name);
