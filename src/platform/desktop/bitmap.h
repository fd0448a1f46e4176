// Pictures: built into the program and looked up by name, or bitmap files of a skin. On dense screens a
// picture has more pixels than its size says; sizes are always those it is drawn at.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/desktop/types.h"

class Bitmap {
 public:
  // A built-in picture; null when there is none of that name (a mistake in the program).
  static std::unique_ptr<Bitmap> Load(const char* name);
  // A bitmap file, which may come from anywhere. Null when it cannot be read, has more than 16 MiB or more
  // than 2048 pixels a side, is cut, contradicts itself, or is no bitmap. On dense screens
  // name@2x.bmp beside name.bmp is drawn in its place, if it is such a file and exactly twice as large.
  static std::unique_ptr<Bitmap> LoadFile(const std::string& path);
  // The same of a bitmap file's bytes. Bit fields must lie apart, and transparency counts for nothing.
  static std::unique_ptr<Bitmap> FromBmp(std::string_view bytes);
  ~Bitmap();

  int Width() const;
  int Height() const;
  // Gives every pixel of one colour another one. False, and nothing changed, when there is no such pixel.
  bool ReplaceColour(COLORREF from, COLORREF to);
  // Makes every pixel of one colour transparent.
  void MakeTransparent(COLORREF key);
  // The colour at a point inside the picture.
  COLORREF PixelAt(int x, int y) const;

 private:
  friend struct BitmapAccess;  // the layer's own way to the pixels
  struct Pixels;
  explicit Bitmap(std::unique_ptr<Pixels> content);
  std::unique_ptr<Pixels> pixels;
};

// A built-in picture that is loaded when it is first drawn: what the first window does not show costs nothing
// at the start.
class LazyBitmap {
 public:
  explicit LazyBitmap(std::string pictureName) : name(std::move(pictureName)) {}
  // As from Bitmap::Load.
  const Bitmap* Get() const {
    if (bitmap == nullptr) bitmap = Bitmap::Load(name.c_str());
    return bitmap.get();
  }

 private:
  std::string name;
  mutable std::unique_ptr<Bitmap> bitmap;
};
