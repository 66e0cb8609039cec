#include "shared/imagemask.h"

#include <QImage>

#include <gtest/gtest.h>

using namespace Morvex;

namespace {

ImageMask maskOf(const std::vector<std::pair<int, QRect>> &rects)
{
    ImageMask mask;
    for (const auto &rect : rects)
        mask.addMaskRect({rect.first, rect.second, false});
    return mask;
}

const int pos = ImageMask::POSITIVE;
const int neg = ImageMask::NEGATIVE;

} // namespace

TEST(ImageMaskTest, ThePixelsThatDontCountGetOneColour)
{
    const std::pair<ImageMask, const char *> rows[] = {
        {maskOf({}), "#####"
                     "#...#"
                     "#####"},
        {maskOf({{neg, QRect(3, 1, 9, 9)}}), "....."
                                             "...##"
                                             "...##"},
        {maskOf({{pos, QRect(0, 0, 2, 2)}, {pos, QRect(3, 0, 1, 3)}}), "..#.#"
                                                                       "..#.#"
                                                                       "###.#"},
        {maskOf({{neg, QRect(0, 0, 1, 1)}, {pos, QRect(-3, -3, 5, 9)}}), "#.###"
                                                                         "..###"
                                                                         "..###"},
        {maskOf({{pos, QRect(0, 0, 5, 3)}}), "..............."},
        {maskOf({{pos, QRect(0, 0, 5, 2)}, {pos, QRect(1, 0, 4, 3)}, {neg, QRect(2, 1, 1, 1)}}),
         "....."
         "..#.."
         "#...."},
    };
    for (const auto &[mask, pattern] : rows) {
        QImage image(5, 3, QImage::Format_ARGB32);
        image.fill(0x80ffffff);
        mask.drawToImage(&image);
        QByteArray hidden;
        for (int i = 0; i < 15; ++i)
            hidden += image.pixel(i % 5, i / 5) == 0xff000102 ? '#' : '.';
        EXPECT_EQ(hidden, pattern);
        EXPECT_EQ(image.hasAlphaChannel(), !hidden.contains('#'));
    }
    QImage none;
    ImageMask().drawToImage(&none);
    EXPECT_TRUE(none.isNull());
}

TEST(ImageMaskTest, TheRectangleAtAPointIsTheTopmostNegativeElseTheTopmostPositiveOne)
{
    const QRect all(0, 0, 20, 20);
    const ImageMask mask =
        maskOf({{pos, all}, {neg, QRect(0, 0, 5, 5)}, {neg, QRect(3, 3, 5, 5)}, {pos, all}});
    const int rows[][3] = {{4, 2, 2}, {1, 1, 2}, {15, 3, 3}, {9, 3, 2}, {21, -1, 3}};
    for (const auto &[place, exact, near] : rows) {
        EXPECT_EQ(mask.maskAt(QPoint(place, place), false), exact) << place;
        EXPECT_EQ(mask.maskAt(QPoint(place, place), true), near) << place;
    }
}

TEST(ImageMaskTest, TheSelectionFollowsItsRectangle)
{
    ImageMask mask = maskOf({{pos, QRect()}, {neg, QRect()}, {neg, QRect()}});
    mask.select(1);
    mask.select(2);
    EXPECT_FALSE(mask.maskRect(1).selected);
    mask.remove(0);
    EXPECT_EQ(mask.selected(), 1);
    EXPECT_TRUE(mask.maskRect(1).selected);
    EXPECT_FALSE(mask.hasPositive());
    mask.remove(1);
    EXPECT_EQ(mask.selected(), -1);
    EXPECT_EQ(mask.count(), 1);
    mask.select(-1);
    for (const int none : {-2, 1, 1000}) {
        mask.select(none);
        mask.remove(none);
        mask.setGeometry(none, QRect(1, 1, 1, 1));
        EXPECT_EQ(mask.maskRect(none).geometry, QRect());
    }
    EXPECT_EQ(mask.count(), 1);
    // Edges and sizes are rounded.
    mask.setGeometry(0, QRect(1, 3, 5, 7));
    mask.scale(1.5);
    EXPECT_EQ(mask.maskRect(0).geometry, QRect(2, 5, 8, 11));
}
