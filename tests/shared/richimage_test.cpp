#include "shared/richimage.h"

#include "shared/pictures/uncompress.h"
#include "shared/uiabstraction/pictures/loadimage.h"
#include "support/test.h"

#include <QBuffer>
#include <QPixmap>

using namespace Morvex;

namespace {

QImage picture(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, qRgb(x * 10, y * 10, 7));
    }
    return image;
}

// Whether the decoder, which complains of it, was given a picture of that size that breaks off.
bool isTruncatedPngDecoded(int side, const char *format)
{
    QImage image(side, side, QImage::Format_Mono);
    image.fill(1);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    bytes.truncate(100);
    return !MorvexTest::standardErrorOf([&] {
                EXPECT_TRUE(loadImage(bytes, format).isNull());
            }).empty();
}

QVariantMap mapOf(const Screenshot &screenshot)
{
    return screenshot.toVariant().toMap();
}

} // namespace

TEST(ScreenshotTest, AVariantKeepsPixelsPlaceAndDensity)
{
    const Screenshot shot(picture(9, 5), QTransform(1, 2, 3, 4, 5, 6), 1.5);
    const Screenshot read = Screenshot::fromVariant(shot.toVariant());
    EXPECT_EQ(read.convertToFormat(QImage::Format_RGB32), picture(9, 5));
    EXPECT_EQ(read.transform(), shot.transform());
    EXPECT_EQ(read.density(), 1.5);
    EXPECT_FALSE(Screenshot().toVariant().isValid());
}

TEST(ScreenshotTest, WhatIsMissingInAMapHasADefaultAndWhatIsBrokenGivesNoPicture)
{
    QVariantMap map = mapOf(Screenshot(picture(3, 3), QTransform(), 2));
    map.remove("density");
    map.remove("transform");
    EXPECT_EQ(Screenshot::fromVariant(map).density(), 1.0);
    EXPECT_TRUE(Screenshot::fromVariant(map).transform().isIdentity());

    QVariantMap fewNumbers = map;
    fewNumbers["transform"] = QVariantList{1.0, 0.0, 0.0, 1.0, 0.0};
    QVariantMap noImage = map;
    noImage.remove("image");
    QVariantMap promises = map;
    promises["image"] = QByteArray("\x7f\xff\xff\xff") + map["image"].toByteArray().mid(4);
    QVariantMap huge = map;
    QByteArray bmp = qUncompress(map["image"].toByteArray());
    bmp.replace(18, 8, QByteArray("\0\0\1\0\0\0\1\0", 8));
    huge["image"] = qCompress(bmp);
    for (const QVariant &variant :
         {QVariant(), QVariant(5), QVariant(fewNumbers), QVariant(noImage), QVariant(promises),
          QVariant(huge), QVariant(QVariantMap{{"image", QByteArray("no picture")}})})
        EXPECT_TRUE(Screenshot::fromVariant(variant).isNull());
    EXPECT_FALSE(Screenshot::fromVariant(map).isNull());
}

TEST(ScreenshotTest, TheOlderMapIsReadWithItsOriginAndScale)
{
    const QByteArray zip = mapOf(Screenshot(picture(3, 3), {}, 1))["image"].toByteArray();
    QPoint origin;
    double scale = 0;
    double density = 7;
    EXPECT_EQ(Screenshot::raw(QVariantMap{{"image", zip}, {"origin", QPoint(4, 6)}, {"scale", 2.0}},
                              &origin, &scale, &density),
              zip);
    EXPECT_EQ(origin, QPoint(4, 6));
    EXPECT_EQ(scale, 2.0);
    EXPECT_EQ(density, 7);
    EXPECT_EQ(Screenshot::raw(QVariant(), nullptr, nullptr, nullptr), QByteArray());
    const Screenshot shot = Screenshot::fromBmpZipData(zip, origin, scale, 3.0);
    EXPECT_EQ(shot.imageToNative(QPoint(2, 2)), QPoint(3, 4));
    EXPECT_EQ(shot.density(), 3.0);
    EXPECT_EQ(Screenshot::fromBmpZipData(zip, origin, 0, 1).imageToNative(QPoint(2, 2)),
              QPoint(6, 8));
    const QByteArray bmp = qUncompress(zip);
    EXPECT_EQ(Screenshot::fromBmpData(reinterpret_cast<const unsigned char *>(bmp.constData()),
                                      bmp.size(), origin, scale, 3.0),
              shot);
}

TEST(ScreenshotTest, CoordinatesGoToAndFro)
{
    const Screenshot shot(picture(9, 5), QTransform(2, 0, 0, 2, 10, 20), 1);
    EXPECT_EQ(shot.imageToNative(QPoint(3, 4)), QPoint(16, 28));
    EXPECT_EQ(shot.nativeToImage(QPoint(16, 28)), QPoint(3, 4));
    EXPECT_EQ(shot.imageToNative(QRect(1, 1, 2, 3)), QRect(12, 22, 4, 6));
    EXPECT_EQ(shot.nativeToImage(QRect(12, 22, 4, 6)), QRect(1, 1, 2, 3));
}

TEST(ScreenshotTest, ACopyMovesItsTransformByTopThenLeft)
{
    const Screenshot shot(picture(30, 30), QTransform(), 2);
    const Screenshot copy = shot.copy(QRect(5, 9, 10, 10));
    EXPECT_EQ(copy.transform().dx(), 9);
    EXPECT_EQ(copy.transform().dy(), 5);
    EXPECT_EQ(copy.density(), 2);
    EXPECT_EQ(copy.pixel(0, 0), shot.pixel(5, 9));
    EXPECT_TRUE(shot.copy(QRect()).transform().isIdentity());
}

TEST(ScreenshotTest, ARotatedPictureMapsItsPixelsToTheSamePlaces)
{
    const Screenshot shot(picture(10, 20), QTransform(), 2);
    for (int i = 0; i < 4; ++i) {
        const Screenshot turned = shot.rotated(i);
        EXPECT_EQ(turned.size(), i == 1 || i == 2 ? QSize(20, 10) : QSize(10, 20));
        EXPECT_EQ(turned.density(), 2);
        for (const QPoint &place : {QPoint(0, 0), QPoint(3, 1), turned.rect().bottomRight()})
            EXPECT_EQ(shot.pixel(turned.imageToNative(place)), turned.pixel(place)) << i;
        EXPECT_EQ(Screenshot::rotated(picture(10, 20), i), turned);
    }
    EXPECT_EQ(shot.rotated(4).size(), shot.size());
}

TEST(LoadImageTest, AHeaderThatPromisesTooManyPixelsIsRefused)
{
    EXPECT_TRUE(
        loadImage("/* XPM */\nstatic char *a[]={\n\"30000 30000 1 1\",\n\"a c #000000\",", "XPM")
            .isNull());
    EXPECT_EQ(
        loadImage("/* XPM */\nstatic char *a[]={\n\"2 1 1 1\",\n\"a c #000000\",\n\"aa\"};", "XPM")
            .size(),
        QSize(2, 1));
    EXPECT_TRUE(uncompress("\x7f\xff\xff\xff\x78\x9c").isEmpty());
}

TEST(LoadImageTest, AFewBytesAreNotDecodedAsAPictureThatTheyCanNotHold)
{
    for (const char *format : {"PNG", "png", ""}) {
        EXPECT_TRUE(isTruncatedPngDecoded(100, format)) << format;
        EXPECT_FALSE(isTruncatedPngDecoded(8000, format)) << format;
    }
}
