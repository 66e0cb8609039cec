#include "shared/imagecomparison.h"

#include "shared/pictures/imageequality.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

using namespace Morvex;

namespace {

QImage filled(const QSize &size, QRgb color)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

QImage noise(const QSize &size, unsigned number)
{
    std::mt19937 random(number);
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, 0xff000000 | (random() & 0xffffff));
    }
    return image;
}

// Pixel by pixel, as the measure is defined.
double correlation(const QImage &a, const QImage &b, bool centred)
{
    const auto gray = [](QRgb pixel) {
        return double((11 * qRed(pixel) + 16 * qGreen(pixel) + 5 * qBlue(pixel)) >> 5);
    };
    double meanA = 0, meanB = 0, aa = 0, bb = 0, ab = 0;
    const int pixels = a.width() * a.height();
    for (int i = 0; centred && i < pixels; ++i) {
        meanA += gray(a.pixel(i % a.width(), i / a.width())) / pixels;
        meanB += gray(b.pixel(i % a.width(), i / a.width())) / pixels;
    }
    for (int i = 0; i < pixels; ++i) {
        const double x = gray(a.pixel(i % a.width(), i / a.width())) - meanA;
        const double y = gray(b.pixel(i % a.width(), i / a.width())) - meanB;
        aa += x * x;
        bb += y * y;
        ab += x * y;
    }
    return ab / std::sqrt(aa * bb);
}

} // namespace

TEST(ImageComparisonTest, HalfTransparentPixelsCountAsTheyAreStored)
{
    QImage a(20, 20, QImage::Format_ARGB32);
    std::mt19937 random(3);
    for (int i = 0; i < 400; ++i)
        a.setPixel(i % 20, i / 20, random());
    const QImage b = noise({20, 20}, 4);
    for (const auto format : {QImage::Format_ARGB32_Premultiplied, QImage::Format_RGBA8888,
                              QImage::Format_RGBA8888_Premultiplied,
                              QImage::Format_ARGB4444_Premultiplied, QImage::Format_Indexed8}) {
        const QImage converted = a.convertToFormat(format);
        EXPECT_NEAR(ImageComparison::normalizedCorrelation(converted, b),
                    correlation(converted, b, false), 1e-9)
            << format;
    }
}

TEST(ImageComparisonTest, TheMeasuresFollowTheirDefinition)
{
    // Wider than what is summed up at a time.
    const QImage a = noise({40001, 2}, 1);
    const QImage b = noise({40001, 2}, 2);
    EXPECT_NEAR(ImageComparison::normalizedCorrelation(a, b), correlation(a, b, false), 1e-9);
    EXPECT_NEAR(ImageComparison::normalizedCrossCorrelation(a, b), correlation(a, b, true), 1e-9);
    EXPECT_DOUBLE_EQ(ImageComparison::normalizedCorrelation(a, a), 1.0);
    EXPECT_DOUBLE_EQ(ImageComparison::normalizedCrossCorrelation(a, a), 1.0);
    const QImage premultiplied = a.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    EXPECT_DOUBLE_EQ(ImageComparison::normalizedCorrelation(a, premultiplied), 1.0);
}

TEST(ImageComparisonTest, PicturesWithoutContentHaveFixedMeasures)
{
    const QImage black = filled({7, 3}, 0xff000000);
    const QImage white = filled({7, 3}, 0xffffffff);
    const QImage colours = noise({7, 3}, 1);
    const std::tuple<QImage, QImage, double, double> rows[] = {
        {black, black, 1.0, 1.0},      {black, colours, 0.0, 0.0}, {colours, black, 0.0, 0.0},
        {white, white, 1.0, 1.0},      {white, black, 0.0, 0.0},   {QImage(), white, 0.0, 0.0},
        {colours, QImage(), 0.0, 0.0},
    };
    for (const auto &[a, b, plain, centred] : rows) {
        EXPECT_EQ(ImageComparison::normalizedCorrelation(a, b), plain);
        EXPECT_EQ(ImageComparison::normalizedCrossCorrelation(a, b), centred);
    }
    // Sizes don't have to agree.
    EXPECT_DOUBLE_EQ(ImageComparison::normalizedCorrelation(white, filled({20, 20}, 0xffffffff)),
                     1.0);
    EXPECT_EQ(ImageComparison::normalizeSize(black, filled({20, 20}, 1)).size(), black.size());
}

TEST(ImageComparisonTest, ThePictureOfDifferencesIsGreenOrRed)
{
    QImage a = filled({2, 1}, qRgb(100, 200, 50));
    const QImage b = a;
    a.setPixel(1, 0, qRgb(0, 0, 0));
    const QImage good = ImageComparison::normalizedCorrelationDiff(a, b, 0.9, 0.9);
    EXPECT_EQ(good.pixel(0, 0), qRgb(80, 210, 40));
    EXPECT_EQ(good.pixel(1, 0), qRgb(10, 160, 5));
    const QImage bad = ImageComparison::normalizedCorrelationDiff(a, b, 0.8, 0.9);
    EXPECT_EQ(bad.pixel(0, 0), qRgb(110, 160, 40));
    EXPECT_EQ(bad.pixel(1, 0), qRgb(110, 20, 5));
    EXPECT_TRUE(ImageComparison::normalizedCorrelationDiff(QImage(), b, 1, 1).isNull());
    EXPECT_EQ(ImageComparison::makeColor(255.5, -3, 7.9), qRgb(255, 0, 7));
}

TEST(ImageEqualityTest, FormatsAndUnusedBytesDontCount)
{
    const QImage colours = noise({9, 4}, 3);
    QImage unused = colours.convertToFormat(QImage::Format_RGB32);
    const QImage opaque = unused;
    reinterpret_cast<QRgb *>(unused.scanLine(1))[2] &= 0xffffff;
    EXPECT_TRUE(haveEqualPixels(colours, opaque));
    EXPECT_TRUE(haveEqualPixels(unused, opaque));
    EXPECT_FALSE(haveEqualPixels(colours, noise({9, 4}, 4)));
    EXPECT_FALSE(haveEqualPixels(colours, noise({9, 5}, 3)));
    // What could not be made is no proof.
    EXPECT_FALSE(haveEqualPixels(QImage(), QImage()));
}

TEST(ImageEqualityTest, OnlyFullyTransparentPixelsLoseTheirColour)
{
    QImage image = filled({3, 1}, 0x00123456);
    image.setPixel(1, 0, 0x01123456);
    for (const auto format : {QImage::Format_ARGB32, QImage::Format_RGBA8888}) {
        QImage converted = image.convertToFormat(format);
        normalizeTransparency(&converted);
        EXPECT_EQ(converted.pixel(0, 0), 0x00ffffffu);
        EXPECT_EQ(converted.pixel(1, 0), 0x01123456u);
    }
    QImage opaque = filled({3, 1}, 0).convertToFormat(QImage::Format_RGB32);
    const QImage before = opaque;
    normalizeTransparency(&opaque);
    EXPECT_EQ(opaque, before);
}
