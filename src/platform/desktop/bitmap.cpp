#include "platform/desktop/bitmap.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>

#include "platform/desktop/bmp_check.h"
#include "platform/desktop/qt/bitmap_pixels.h"
#include "platform/system/file.h"

namespace {

QRgb OpaquePixel(COLORREF colour) {
  return qRgb(RedOf(colour), GreenOf(colour), BlueOf(colour));
}

// Without guessing the format: guessing loads every picture plugin there is.
QImage ReadUnguessed(QImageReader& reader) {
  reader.setAutoDetectImageFormat(false);
  return reader.read();
}

QImage ReadPng(const QString& path) {
  if (!QFile::exists(path)) return {};
  QImageReader reader(path, "png");
  return ReadUnguessed(reader);
}

// "folder/name@2x.bmp" for "folder/name.bmp".
std::string DensePath(const std::string& path) {
  const std::size_t dot = path.rfind('.');
  const bool ending = dot != std::string::npos && path.find('/', dot) == std::string::npos;
  return std::string(path).insert(ending ? dot : path.size(), "@2x");
}

bool ReplacePixels(QImage& image, QRgb from, QRgb to) {
  bool found = false;
  for (int y = 0; y < image.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
    for (int x = 0; x < image.width(); ++x) {
      if (row[x] != from) continue;
      row[x] = to;
      found = true;
    }
  }
  return found;
}

}  // namespace

QImage LoadBuiltInImage(const QString& name) {
  const QString base = QStringLiteral(":/daybrix/") + name;
  QImage image;
  if (qGuiApp->devicePixelRatio() > 1.0) image = ReadPng(base + QStringLiteral("@2x.png"));
  const qreal ratio = image.isNull() ? 1.0 : 2.0;
  if (image.isNull()) image = ReadPng(base + QStringLiteral(".png"));
  if (image.isNull()) return image;
  image.convertTo(QImage::Format_ARGB32);
  image.setDevicePixelRatio(ratio);
  return image;
}

Bitmap::Bitmap(std::unique_ptr<Pixels> content) : pixels(std::move(content)) {}
Bitmap::~Bitmap() = default;

std::unique_ptr<Bitmap> Bitmap::Load(const char* name) {
  QImage image = LoadBuiltInImage(QString::fromLatin1(name));
  if (image.isNull()) return nullptr;
  return std::unique_ptr<Bitmap>(new Bitmap(std::make_unique<Pixels>(Pixels{std::move(image)})));
}

std::unique_ptr<Bitmap> Bitmap::LoadFile(const std::string& path) {
  const auto read = [](const std::string& file) {
    std::string bytes;
    return platform::ReadWholeFile(file, kMostBmpBytes, bytes) ? FromBmp(bytes) : nullptr;
  };
  std::unique_ptr<Bitmap> bitmap = read(path);
  if (bitmap == nullptr || qGuiApp->devicePixelRatio() <= 1.0) return bitmap;
  std::unique_ptr<Bitmap> dense = read(DensePath(path));
  if (dense == nullptr || dense->pixels->image.size() != 2 * bitmap->pixels->image.size()) return bitmap;
  dense->pixels->image.setDevicePixelRatio(2.0);
  return dense;
}

std::unique_ptr<Bitmap> Bitmap::FromBmp(std::string_view bytes) {
  std::string room;
  const std::optional<std::string_view> plain = PlainBmp(bytes, room);
  if (!plain) return nullptr;
  QBuffer buffer;
  buffer.setData(QByteArray::fromRawData(plain->data(), static_cast<qsizetype>(plain->size())));
  buffer.open(QIODevice::ReadOnly);
  QImageReader reader(&buffer, "bmp");
  QImage image = ReadUnguessed(reader);
  if (image.isNull()) return nullptr;
  image.convertTo(QImage::Format_RGB32);
  image.convertTo(QImage::Format_ARGB32);
  return std::unique_ptr<Bitmap>(new Bitmap(std::make_unique<Pixels>(Pixels{std::move(image)})));
}

int Bitmap::Width() const {
  return qRound(pixels->image.width() / pixels->image.devicePixelRatio());
}
int Bitmap::Height() const {
  return qRound(pixels->image.height() / pixels->image.devicePixelRatio());
}

bool Bitmap::ReplaceColour(COLORREF from, COLORREF to) {
  return ReplacePixels(pixels->image, OpaquePixel(from), OpaquePixel(to));
}

void Bitmap::MakeTransparent(COLORREF key) {
  ReplacePixels(pixels->image, OpaquePixel(key), qRgba(0, 0, 0, 0));
}

COLORREF Bitmap::PixelAt(int x, int y) const {
  const qreal ratio = pixels->image.devicePixelRatio();
  const QRgb pixel = pixels->image.pixel(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
  return RGB(qRed(pixel), qGreen(pixel), qBlue(pixel));
}
