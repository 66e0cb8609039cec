#include "shared/uiabstraction/pictures/loadimage.h"

#include <QBuffer>
#include <QImageReader>

namespace Morvex {
namespace {

// By the densest that zlib packs and the least that a pixel takes: a few bytes can't make a large
// picture, but the reader would get the memory for one first.
bool canHold(const QByteArray &png, qint64 pixels)
{
    const qint64 maxCompressionRatio = 1032;
    const qint64 pixelsPerByte = 8;
    return pixels / pixelsPerByte <= png.size() * maxCompressionRatio;
}

} // namespace

qint64 pixelCount(const QSize &size)
{
    return qint64(size.width()) * size.height();
}

bool isTooLargePicture(const QSize &size)
{
    return pixelCount(size) > maxPicturePixels;
}

QImage loadImage(const QByteArray &bytes, const QByteArray &format, qint64 maxPixels)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, format);
    const QSize size = reader.size();
    if (!size.isValid() || pixelCount(size) > maxPixels)
        return {};
    // The name is the caller's own when one was given.
    if (reader.format().toLower() == "png" && !canHold(bytes, pixelCount(size)))
        return {};
    return reader.read();
}

} // namespace Morvex
