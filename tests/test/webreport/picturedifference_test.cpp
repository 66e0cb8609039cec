#include "test/webreport/picturedifference.h"

#include "support/test.h"

#include <QImage>

using namespace Morvex;
using namespace MorvexTest;

TEST(PictureDifferenceTest, PixelsThatDifferAreCountedAndNearOnesAreOneRegion)
{
    const QTemporaryDir dir;
    const QString failed = dir.filePath("failed_7.png");
    QImage picture(200, 100, QImage::Format_RGB32);
    picture.fill(Qt::white);
    picture.save(dir.filePath("expected_7.png"));
    for (const QPoint place : {QPoint(199, 99), QPoint(3, 4), QPoint(20, 10)})
        picture.setPixel(place, 0);
    picture.save(failed);
    EXPECT_TRUE(writePictureDifference(failed));
    EXPECT_EQ(readFile(failed + ".js"),
              "morvexPictureDifference({\"largest\":[[3,4,18,7],[199,99,1,1]],\"pixels\":3,"
              "\"regions\":2});\n");

    // Nothing is said of pictures that can't be compared.
    const QString other = dir.filePath("failed_8.png");
    picture.save(other);
    EXPECT_TRUE(writePictureDifference(other));
    picture.scaled(20, 20).save(dir.filePath("expected_8.png"));
    EXPECT_TRUE(writePictureDifference(other));
    EXPECT_EQ(readFile(other + ".js"), "");
}
