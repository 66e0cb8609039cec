#include "shared/imagecomparison.h"

#include <algorithm>
#include <cmath>

namespace Morvex {
namespace {

// Sums of this many products of gray values fit into 32 bits, which the compiler handles several
// at a time.
const int blockSize = 32768;

struct Sums
{
    quint64 a = 0;
    quint64 b = 0;
    quint64 aa = 0;
    quint64 bb = 0;
    quint64 ab = 0;
};

inline quint32 gray(QRgb pixel)
{
    return (11 * ((pixel >> 16) & 0xff) + 16 * ((pixel >> 8) & 0xff) + 5 * (pixel & 0xff)) >> 5;
}

void addBlock(const QRgb *a, const QRgb *b, int count, Sums *sums)
{
    quint32 sumA = 0;
    quint32 sumB = 0;
    quint32 sumAA = 0;
    quint32 sumBB = 0;
    quint32 sumAB = 0;
    for (int i = 0; i < count; ++i) {
        const quint32 grayA = gray(a[i]);
        const quint32 grayB = gray(b[i]);
        sumA += grayA;
        sumB += grayB;
        sumAA += grayA * grayA;
        sumBB += grayB * grayB;
        sumAB += grayA * grayB;
    }
    sums->a += sumA;
    sums->b += sumB;
    sums->aa += sumAA;
    sums->bb += sumBB;
    sums->ab += sumAB;
}

// With the pixels that QImage::pixel gives.
QImage withPlainPixels(const QImage &image)
{
    return image.format() == QImage::Format_RGB32 || image.format() == QImage::Format_ARGB32
               ? image
               : image.convertToFormat(QImage::Format_ARGB32);
}

const QRgb *line(const QImage &image, int y)
{
    return reinterpret_cast<const QRgb *>(image.constScanLine(y));
}

// Both of one size.
Sums sumsOf(const QImage &a, const QImage &b)
{
    const QImage plainA = withPlainPixels(a);
    const QImage plainB = withPlainPixels(b);
    Sums sums;
    for (int y = 0; y < plainA.height(); ++y) {
        for (int x = 0; x < plainA.width(); x += blockSize)
            addBlock(line(plainA, y) + x, line(plainB, y) + x,
                     std::min(blockSize, plainA.width() - x), &sums);
    }
    return sums;
}

// The sum of products of the distances from the means.
long double centred(quint64 products, quint64 a, quint64 b, long double pixels)
{
    return static_cast<long double>(products) -
           static_cast<long double>(a) * static_cast<long double>(b) / pixels;
}

// Gray values are whole numbers: two of them that differ give a sum of squares of at least a half.
bool isZero(long double sumOfSquares)
{
    return sumOfSquares < 0.25L;
}

QRgb diffColor(QRgb pixel, bool isEqual, bool isGood)
{
    const int red = qRed(pixel);
    const int green = qGreen(pixel);
    const int blue = qBlue(pixel);
    if (isGood)
        return isEqual ? ImageComparison::makeColor(red * 0.8, green + 10, blue * 0.8)
                       : ImageComparison::makeColor(red * 0.1, green * 0.5 + 60, blue * 0.1);
    return isEqual ? ImageComparison::makeColor(red + 10, green * 0.8, blue * 0.8)
                   : ImageComparison::makeColor(red * 0.5 + 60, green * 0.1, blue * 0.1);
}

int channel(double value)
{
    if (value >= 255)
        return 255;
    return value > 0 ? static_cast<int>(value) : 0;
}

} // namespace

QRgb ImageComparison::makeColor(double red, double green, double blue)
{
    return qRgb(channel(red), channel(green), channel(blue));
}

QImage ImageComparison::normalizeSize(const QImage &image, const QImage &other)
{
    return image.size() == other.size()
               ? other
               : other.scaled(image.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

double ImageComparison::normalizedCorrelation(const QImage &a, const QImage &b)
{
    if (a.isNull() || b.isNull())
        return 0.0;
    const Sums sums = sumsOf(a, normalizeSize(a, b));
    if (sums.aa == 0 || sums.bb == 0)
        return sums.aa == sums.bb ? 1.0 : 0.0;
    return double(sums.ab) / std::sqrt(double(sums.aa) * double(sums.bb));
}

double ImageComparison::normalizedCrossCorrelation(const QImage &a, const QImage &b)
{
    if (a.isNull() || b.isNull())
        return 0.0;
    const Sums sums = sumsOf(a, normalizeSize(a, b));
    const auto pixels = static_cast<long double>(qint64(a.width()) * a.height());
    const long double aa = centred(sums.aa, sums.a, sums.a, pixels);
    const long double bb = centred(sums.bb, sums.b, sums.b, pixels);
    const long double ab = centred(sums.ab, sums.a, sums.b, pixels);
    if (isZero(aa) && isZero(bb))
        return sums.a == sums.b ? 1.0 : 0.0;
    return isZero(aa) || isZero(bb) ? 0.0 : double(ab / std::sqrt(aa * bb));
}

QImage ImageComparison::normalizedCorrelationDiff(const QImage &a, const QImage &b, double value,
                                                  double threshold)
{
    if (a.isNull() || b.isNull())
        return {};
    QImage diff = normalizeSize(b, a).convertToFormat(QImage::Format_ARGB32);
    const QImage plain = withPlainPixels(b);
    for (int y = 0; y < diff.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(diff.scanLine(y));
        const QRgb *other = line(plain, y);
        for (int x = 0; x < diff.width(); ++x)
            pixels[x] = diffColor(other[x], gray(pixels[x]) == gray(other[x]), value >= threshold);
    }
    return diff;
}

} // namespace Morvex
