#include "shared/pictures/imageequality.h"

#include <cstring>

namespace Morvex {
namespace {

// Where a picture then loses its alpha channel, to a mask or on its way, such a pixel equals an
// opaque white one: that is wanted.
const QRgb transparent = 0x00ffffff;

bool hasTransparentPixel(const QImage &image, int row)
{
    const auto *pixels = reinterpret_cast<const QRgb *>(image.constScanLine(row));
    unsigned transparentPixels = 0;
    // Without a way out in between, which makes it several times faster.
    for (int x = 0; x < image.width(); ++x)
        transparentPixels += pixels[x] < 0x01000000;
    return transparentPixels > 0;
}

bool haveEqualBytes(const QImage &a, const QImage &b)
{
    const auto lineSize = static_cast<std::size_t>(a.width()) * sizeof(QRgb);
    for (int y = 0; y < a.height(); ++y) {
        if (std::memcmp(a.constScanLine(y), b.constScanLine(y), lineSize) != 0)
            return false;
    }
    return true;
}

} // namespace

void normalizeTransparency(QImage *image)
{
    if (!image->hasAlphaChannel())
        return;
    if (image->format() != QImage::Format_ARGB32)
        *image = std::move(*image).convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image->height(); ++y) {
        // Most pictures have no such pixel, and writing would copy those that others hold.
        if (!hasTransparentPixel(*image, y))
            continue;
        auto *pixels = reinterpret_cast<QRgb *>(image->scanLine(y));
        for (int x = 0; x < image->width(); ++x)
            pixels[x] = qAlpha(pixels[x]) == 0 ? transparent : pixels[x];
    }
}

bool haveEqualPixels(const QImage &a, const QImage &b)
{
    if (a.isNull() || b.isNull() || a.size() != b.size())
        return false;
    if (a.format() != b.format()) {
        // What one of them can't hold doesn't count.
        const auto common = a.hasAlphaChannel() && b.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                       : QImage::Format_RGB32;
        const QImage converted = a.convertToFormat(common);
        return !converted.isNull() && converted == b.convertToFormat(common);
    }
    // What differs may still be a byte that does not count.
    return (a.depth() == 32 && haveEqualBytes(a, b)) || a == b;
}

} // namespace Morvex
