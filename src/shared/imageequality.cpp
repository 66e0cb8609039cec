#include "shared/imageequality.h"

#include <cstring>

namespace Morvex {
namespace {

const QRgb transparent = 0x00ffffff;

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
        // What one of them can't tell doesn't count.
        const auto common = a.hasAlphaChannel() && b.hasAlphaChannel() ? QImage::Format_ARGB32
                                                                       : QImage::Format_RGB32;
        const QImage converted = a.convertToFormat(common);
        return !converted.isNull() && converted == b.convertToFormat(common);
    }
    // What differs may still be a byte that does not count.
    return (a.depth() == 32 && haveEqualBytes(a, b)) || a == b;
}

} // namespace Morvex
