#include "shared/imagecomparison.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Morvex {
namespace {

// The gray values of a block stay near the processor, and their products, summed up, fit into 32
// bits.
const int blockSize = 2048;
using GrayBlock = std::array<qint16, blockSize>;

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
    const quint32 red = (pixel >> 16) & 0xff;
    const quint32 green = (pixel >> 8) & 0xff;
    const quint32 blue = pixel & 0xff;
    return (11 * red + 16 * green + 5 * blue) >> 5;
}

// How many of the first pixels were converted: as many as fit into whole registers.
int toGrayInRegisters(const QRgb *pixels, int count, GrayBlock &grays)
{
    int i = 0;
#ifdef __SSE2__
    const __m128i redAndBlue = _mm_set1_epi32(0x00ff00ff);
    const __m128i weights = _mm_set1_epi32((11 << 16) | 5);
    const __m128i sixteenGreen = _mm_set1_epi32(0xff0);
    const auto grayOf = [&](const QRgb *four) {
        const __m128i pixel = _mm_loadu_si128(reinterpret_cast<const __m128i *>(four));
        const __m128i weighted = _mm_madd_epi16(_mm_and_si128(pixel, redAndBlue), weights);
        const __m128i green = _mm_and_si128(_mm_srli_epi32(pixel, 4), sixteenGreen);
        return _mm_srli_epi32(_mm_add_epi32(weighted, green), 5);
    };
    for (; i + 8 <= count; i += 8)
        _mm_storeu_si128(reinterpret_cast<__m128i *>(grays.data() + i),
                         _mm_packs_epi32(grayOf(pixels + i), grayOf(pixels + i + 4)));
#else
    Q_UNUSED(pixels)
    Q_UNUSED(count)
    Q_UNUSED(grays)
#endif
    return i;
}

void toGray(const QRgb *pixels, int count, GrayBlock &grays)
{
    for (int i = toGrayInRegisters(pixels, count, grays); i < count; ++i)
        grays[static_cast<std::size_t>(i)] = static_cast<qint16>(gray(pixels[i]));
}

// Of 16 bit numbers, since compilers have an instruction for just this.
void addProducts(const GrayBlock &a, const GrayBlock &b, int count, Sums *sums)
{
    int aa = 0;
    int bb = 0;
    int ab = 0;
    const qint16 *grayA = a.data();
    const qint16 *grayB = b.data();
    for (int i = 0; i < count; ++i) {
        aa += grayA[i] * grayA[i];
        bb += grayB[i] * grayB[i];
        ab += grayA[i] * grayB[i];
    }
    sums->aa += static_cast<quint64>(aa);
    sums->bb += static_cast<quint64>(bb);
    sums->ab += static_cast<quint64>(ab);
}

quint64 sumOf(const GrayBlock &grays, int count)
{
    return static_cast<quint64>(std::accumulate(grays.begin(), grays.begin() + count, 0));
}

void addBlock(const QRgb *a, const QRgb *b, int count, bool withMeans, Sums *sums)
{
    GrayBlock grayA;
    GrayBlock grayB;
    toGray(a, count, grayA);
    toGray(b, count, grayB);
    addProducts(grayA, grayB, count, sums);
    if (withMeans) {
        sums->a += sumOf(grayA, count);
        sums->b += sumOf(grayB, count);
    }
}

// The pixels that QImage::pixel gives: those of a premultiplied picture as they are stored, which
// no conversion of formats gives.
QImage withPlainPixels(const QImage &image)
{
    switch (image.format()) {
    case QImage::Format_RGB32:
    case QImage::Format_ARGB32:
    case QImage::Format_ARGB32_Premultiplied:
        return image;
    default:
        break;
    }
    QImage plain(image.size(), QImage::Format_ARGB32);
    for (int y = 0; y < plain.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(plain.scanLine(y));
        for (int x = 0; x < plain.width(); ++x)
            pixels[x] = image.pixel(x, y);
    }
    return plain;
}

const QRgb *line(const QImage &image, int y)
{
    return reinterpret_cast<const QRgb *>(image.constScanLine(y));
}

// Both of one size.
Sums sumsOf(const QImage &a, const QImage &b, bool withMeans)
{
    const QImage plainA = withPlainPixels(a);
    const QImage plainB = withPlainPixels(b);
    Sums sums;
    for (int y = 0; y < plainA.height(); ++y) {
        for (int x = 0; x < plainA.width(); x += blockSize)
            addBlock(line(plainA, y) + x, line(plainB, y) + x,
                     std::min(blockSize, plainA.width() - x), withMeans, &sums);
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
    const Sums sums = sumsOf(a, normalizeSize(a, b), false);
    if (sums.aa == 0 || sums.bb == 0)
        return sums.aa == sums.bb ? 1.0 : 0.0;
    return double(sums.ab) / std::sqrt(double(sums.aa) * double(sums.bb));
}

double ImageComparison::normalizedCrossCorrelation(const QImage &a, const QImage &b)
{
    if (a.isNull() || b.isNull())
        return 0.0;
    const Sums sums = sumsOf(a, normalizeSize(a, b), true);
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
    const QImage plainA = withPlainPixels(normalizeSize(b, a));
    const QImage plainB = withPlainPixels(b);
    QImage diff(b.size(), QImage::Format_ARGB32);
    for (int y = 0; y < diff.height(); ++y) {
        auto *pixels = reinterpret_cast<QRgb *>(diff.scanLine(y));
        const QRgb *pixelsA = line(plainA, y);
        const QRgb *pixelsB = line(plainB, y);
        for (int x = 0; x < diff.width(); ++x)
            pixels[x] =
                diffColor(pixelsB[x], gray(pixelsA[x]) == gray(pixelsB[x]), value >= threshold);
    }
    return diff;
}

} // namespace Morvex
