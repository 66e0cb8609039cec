#include "support/filesizelimit.h"
#include "support/test.h"
#include "support/verification.h"

#include "shared/richimage.h"

#include <QBuffer>
#include <QPainter>
#include <QRandomGenerator>
#include <QWidget>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray png(const QImage &image)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return buffer.data().toBase64();
}

QByteArray element(const QImage &stored, const QByteArray &rest = "",
                   const QByteArray &attributes = "")
{
    return "<Verification object='picture' type='PNG' " + attributes + ">" + png(stored) + rest +
           "</Verification>";
}

QByteArray masks(const QByteArray &rects)
{
    return "<MaskList>" + rects + "</MaskList>";
}

QByteArray rect(const QByteArray &type, int x, int y, int width, int height)
{
    return QString("<Mask type='%1' x='%2' y='%3' width='%4' height='%5'/>")
        .arg(QString(type))
        .arg(x)
        .arg(y)
        .arg(width)
        .arg(height)
        .toUtf8();
}

QImage withPixel(QImage image, int x, int y, QRgb color = 0xff00ff00)
{
    image.setPixel(x, y, color);
    return image;
}

QImage plain(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(0xff336699);
    return image;
}

// Shows a picture pixel by pixel.
class PictureWidget : public QWidget
{
public:
    void show(const QImage &shown)
    {
        m_image = shown;
        setFixedSize(shown.size());
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(0, 0, m_image);
    }

private:
    QImage m_image;
};

const char screenshotType[] = "version='5' type='Screenshot'";

} // namespace

class ScreenshotVPTest : public VerificationTest
{
protected:
    ScreenshotVPTest()
        : m_prefix("MORVEX_PREFIX", path("prefix").toUtf8())
    {
        widget.setObjectName("picture");
        widget.show(plain(size));
    }

    /// Type and details of the one result.
    QString outcomeOf(const QByteArray &body, const QByteArray &root = screenshotType)
    {
        verify(root, body);
        const QStringList results = takeResults();
        EXPECT_EQ(results.size(), 1);
        return results[0].section(' ', 0, 0) + " " + results[0].section('|', 1);
    }

    void addComparator(const QString &name, const QByteArray &script)
    {
        writeFile(path("prefix/bin/" + name), "#!/bin/sh\n" + script + "\n");
        QFile::setPermissions(path("prefix/bin/" + name), QFile::ReadOwner | QFile::ExeOwner);
    }

    const QSize size{20, 10};
    PictureWidget widget;

private:
    EnvironmentGuard m_prefix;
};

TEST_F(ScreenshotVPTest, OnlyTheAttemptThatCountsLeavesPictures)
{
    options.setRetryDuration(60000);
    const QImage wanted = withPixel(plain(size), 5, 5);
    resolver.beforeLookup = [&](int lookup) { widget.show(lookup == 3 ? wanted : plain(size)); };
    EXPECT_EQ(verify(screenshotType, element(wanted)).summary(), VPResult::SummaryPassed);
    const QDir pictures(path("suite/tst_a/points/failedImages"));
    EXPECT_FALSE(pictures.exists());

    // An expected failure ends the retrying after an unexpected pass.
    resolver.lookups = 0;
    expectFail = true;
    resolver.beforeLookup = [&](int lookup) { widget.show(lookup == 3 ? plain(size) : wanted); };
    EXPECT_EQ(verify(screenshotType, element(wanted)).summary(), VPResult::SummaryPassed);
    EXPECT_EQ(pictures.entryList(QDir::Files),
              (QStringList{"difference_1.png", "expected_1.png", "failed_1.png"}));
}

TEST_F(ScreenshotVPTest, MasksDecideWhichPixelsCount)
{
    const QString same = "PASS Screenshots are considered identical";
    const QString different = "FAIL Screenshots do not match";
    const QImage base = plain(size);
    const std::tuple<const char *, QImage, QByteArray, bool> rows[] = {
        {"equal", base, "", true},
        {"inner pixel", withPixel(base, 5, 5), "", false},
        {"left edge", withPixel(base, 0, 5), "", true},
        {"bottom right corner", withPixel(base, 19, 9), "", true},
        {"inside of the frame", withPixel(base, 1, 1), "", false},
        {"frame with a mask elsewhere", withPixel(base, 0, 5), masks(rect("negative", 5, 5, 1, 1)),
         false},
        {"hidden pixel", withPixel(base, 5, 5), masks(rect("negative", 5, 5, 1, 1)), true},
        {"any other type hides", withPixel(base, 5, 5), masks(rect("", 5, 5, 1, 1)), true},
        {"outside of what counts", withPixel(base, 5, 5), masks(rect("positive", 10, 0, 10, 10)),
         true},
        {"inside of what counts", withPixel(base, 12, 5), masks(rect("positive", 10, 0, 10, 10)),
         false},
        {"beyond all numbers", withPixel(base, 5, 5),
         masks(rect("negative", 2147483647, 0, 2147483647, 1) +
               rect("positive", -2147483647, -2147483647, 10, 10)),
         true},
        {"no size", withPixel(base, 5, 5), masks(rect("negative", 5, 5, 0, -3)), false},
        {"larger", plain({21, 10}), "", false},
        {"larger with a hidden part", plain({21, 10}), masks(rect("negative", 0, 0, 21, 10)),
         false},
        {"larger than what counts", plain({21, 12}), masks(rect("positive", 0, 0, 20, 10)), true},
        {"smaller than what counts", plain({10, 10}), masks(rect("positive", 0, 0, 20, 10)), false},
        {"longer than any screen", plain({7000000, 1}), masks(rect("positive", 0, 0, 1, 1)), false},
        {"no picture", QImage(), "", false},
    };
    for (const auto &[what, stored, rest, isSame] : rows) {
        const QString outcome = outcomeOf(element(stored, rest));
        EXPECT_TRUE(isSame ? outcome == same : outcome.startsWith(different + ". "))
            << what << ": " << outcome.toStdString();
    }
}

TEST_F(ScreenshotVPTest, FullyTransparentPixelsAreEqualWhateverTheyHold)
{
    QImage shown(size, QImage::Format_ARGB32);
    shown.fill(0x00000000);
    QImage stored(size, QImage::Format_ARGB32);
    stored.fill(0x00ff0000);
    widget.setAttribute(Qt::WA_TranslucentBackground);
    widget.show(shown);
    ASSERT_TRUE(widget.grab().toImage().hasAlphaChannel());
    EXPECT_EQ(outcomeOf(element(stored)), "PASS Screenshots are considered identical");
    EXPECT_EQ(outcomeOf(element(stored, masks(rect("positive", 0, 0, 20, 10)))),
              "PASS Screenshots are considered identical");
    EXPECT_TRUE(outcomeOf(element(withPixel(stored, 5, 5, 0xff0000ff))).startsWith("FAIL "));
}

TEST_F(ScreenshotVPTest, AllVersionsTakeThePictureTheirWay)
{
    for (const char *version : {"1", "2", "3", "4", "5"}) {
        const QByteArray root = "version='" + QByteArray(version) + "' type='Screenshot'";
        EXPECT_TRUE(outcomeOf(element(plain(size)), root).startsWith("PASS ")) << version;
        EXPECT_TRUE(outcomeOf(element(withPixel(plain(size), 5, 5)), root).startsWith("FAIL "))
            << version;
    }
}

TEST_F(ScreenshotVPTest, APictureThatCantBeTakenFailsAlsoWhenThatIsExpected)
{
    auto *child = new QObject(&widget);
    child->setObjectName("timer");
    const QByteArray body =
        element(plain(size), "", "xfail='true'").replace("'picture'", "'timer'");
    EXPECT_EQ(verify(screenshotType, body).summary(), VPResult::SummaryFailed);
    EXPECT_EQ(takeResults(),
              QStringList("FAIL vp: Internal error while taking screenshot of object 'timer'|"
                          "TestVP::grabObjectScreenshot: calling grabObjectScreenshot returned "
                          "invalid variant! the object is not a widget"));
    EXPECT_EQ(verify("version='3' type='Screenshot'", body).summary(), VPResult::SummaryFailed);
    EXPECT_EQ(takeResults(),
              QStringList("FAIL vp: Internal error while taking screenshot of object 'timer'|"));
    verify(screenshotType, QByteArray(body).replace("'timer'", "'none'"));
    EXPECT_EQ(takeResults(),
              QStringList("ERROR vp: No such object 'none'|There is no object {name='none'}."));
}

TEST_F(ScreenshotVPTest, APictureThatDiffersIsStoredWithTheExpectedOne)
{
    const auto pictureIn = [](const QString &file) {
        return QImage(file).convertToFormat(QImage::Format_RGB32);
    };
    const QImage stored = withPixel(plain(size), 5, 5);
    const QString beside = path("suite/tst_a/points/failedImages/");
    runner.results = QString();
    EXPECT_EQ(outcomeOf(element(stored)),
              "FAIL Screenshots do not match. Differing screenshot saved as '" + beside +
                  "failed_1.png'");
    expectFail = true;
    EXPECT_TRUE(
        outcomeOf(element(stored, masks(rect("negative", 0, 0, 2, 2)))).startsWith("XFAIL "));
    EXPECT_TRUE(outcomeOf(element(plain(size))).startsWith("XPASS "));
    expectFail = false;
    // As they were taken and stored, without masks.
    EXPECT_EQ(pictureIn(beside + "failed_2.png"), plain(size));
    EXPECT_EQ(pictureIn(beside + "expected_2.png"), stored);
    EXPECT_EQ(QImage(beside + "difference_2.png").size(), stored.size());

    runner.results = path("results");
    const QString inResults = path("results/suite/tst_a/vp/failedImages/");
    EXPECT_TRUE(outcomeOf(element(stored)).endsWith("'" + inResults + "failed_1.png'"));
    EXPECT_EQ(pictureIn(inResults + "expected_1.png"), stored);
    EXPECT_EQ(TestVP("/a/b/other", "/a/b/other").failedImageDir(&runner),
              path("results/suite/tst_a/other/failedImages/"));

    writeFile(path("blocked"), "");
    runner.results = path("blocked");
    EXPECT_TRUE(
        outcomeOf(element(stored)).endsWith("creating directory for failed images failed."));
}

TEST_F(ScreenshotVPTest, LearningReplacesThePictureThatDiffersOrIsNotThereAndNoOther)
{
    const EnvironmentGuard learn("MORVEX_LEARN_SCREENSHOTS", "1");
    EXPECT_EQ(outcomeOf(element(plain(size))), "PASS Screenshots are considered identical");
    EXPECT_TRUE(pointFile().contains(element(plain(size))));

    const QByteArray masked =
        element(withPixel(plain(size), 5, 5), masks(rect("negative", 0, 0, 2, 2)));
    EXPECT_EQ(verify(screenshotType, masked).summary(), VPResult::SummaryPassed);
    EXPECT_EQ(takeResults(),
              QStringList("WARNING vp: Screenshot comparison of 'picture' failed, Verification "
                          "Point was updated due to the MORVEX_LEARN_SCREENSHOTS environment "
                          "variable|Screenshots do not match"));
    EXPECT_FALSE(QDir(path("suite/tst_a/points/failedImages")).exists());
    EXPECT_TRUE(pointFile().contains("<Mask ")) << pointFile().constData();
    const QByteArray learned = pointFile();
    verify(screenshotType, "<Verification object='picture' type='XPM'/>");
    EXPECT_TRUE(pointFile().contains("type=\"PNG\""));
    const EnvironmentGuard off("MORVEX_LEARN_SCREENSHOTS", "true");
    for (const QByteArray &file : {learned, pointFile()}) {
        takeResults();
        verifyFile(file);
        EXPECT_TRUE(takeResults().first().startsWith("PASS ")) << file.constData();
    }
}

TEST_F(ScreenshotVPTest, AComparisonApplicationDecides)
{
    const QString program = path("prefix/bin/");
    const QByteArray noMask = masks("");
    const std::tuple<const char *, const char *, QByteArray, QByteArray, QString> rows[] = {
        {"agrees", "echo fine; echo noise >&2", noMask, "", "PASS fine\n"},
        {"reads", "cat; echo read", noMask, "", "PASS read\n"},
        {"cut", "printf 'seen\\0unseen'", noMask, "", "PASS seen"},
        {"refuses", "echo \"2 of 3\"; exit 3", noMask, "", "FAIL 2 of 3\n. Differing screenshot "},
        {"mutters", "echo muttered >&2; exit 1", noMask, "", "FAIL muttered\n. Differing "},
        {"silent", "exit 1", noMask, "", "FAIL . Differing screenshot saved as '"},
        // A parameter list starts at the first Parameter; all elements after it belong to it.
        {"arguments",
         "cmp -s \"$1\" \"$2\" && echo equal || echo different; shift 2; echo \"$@\"; exit 0",
         masks(rect("negative", 5, 5, 1, 1)), "<A>0</A><Parameter>1</Parameter><B>2 3</B>",
         "PASS equal\n1 2 3\n"},
        {"crashes", "kill -SEGV $$", noMask, "",
         "ERROR The comparator process " + program + "crashes has crashed: Process crashed"},
        {"missing", nullptr, noMask, "",
         "ERROR Failed to start comparison application '" + program + "missing': "},
        {"strict", nullptr, noMask, "", "FAIL Screenshots do not match. "},
    };
    const QImage other = withPixel(plain(size), 5, 5);
    for (const auto &[name, script, mask, children, start] : rows) {
        if (script)
            addComparator(name, script);
        const QString outcome = outcomeOf(
            element(other, mask + "<Algorithm name='" + name + "'>" + children + "</Algorithm>"));
        EXPECT_TRUE(outcome.startsWith(start)) << outcome.toStdString();
        EXPECT_TRUE(start.startsWith("FAIL") || start.endsWith(": ") || outcome == start);
    }
    EXPECT_TRUE(outcomeOf(element(other, noMask + "<Algorithm name='agrees'/>"),
                          "version='2' type='Screenshot'")
                    .startsWith("FAIL Screenshots do not match. "));
}

TEST_F(ScreenshotVPTest, ComparisonLeavesNoTemporaryFilesAndSaysWhereItCouldNotWrite)
{
    QDir().mkpath(path("tmp"));
    addComparator("crashes", "kill -SEGV $$");
    const QByteArray body = element(plain(size), masks("") + "<Algorithm name='crashes'/>");
    {
        const EnvironmentGuard temporary("TMPDIR", path("tmp").toUtf8());
        outcomeOf(body);
        EXPECT_EQ(QDir(path("tmp")).entryList(QDir::Files), QStringList());
    }
    const QByteArray withoutPicture = "<Verification object='picture' type='PNG'>-<A/>"
                                      "<Algorithm name='crashes'/></Verification>";
    const QString unwritable = outcomeOf(withoutPicture);
    EXPECT_TRUE(unwritable.startsWith("ERROR Could not write expected image to temporary file '"))
        << unwritable.toStdString();
    QImage large = plain({60, 60});
    QRandomGenerator noise(1);
    noise.fillRange(reinterpret_cast<quint32 *>(large.bits()), 60 * 60);
    widget.show(large);
    {
        // Room for the file of the verification point alone.
        const FileSizeLimit full(400);
        const QString cut = outcomeOf(withoutPicture);
        EXPECT_TRUE(cut.startsWith("ERROR Could not write actual image to temporary file '"))
            << cut.toStdString();
    }
    writeFile(path("blocked"), "a file where the directory should be");
    const EnvironmentGuard temporary("TMPDIR", path("blocked").toUtf8());
    const QString outcome = outcomeOf(body);
    EXPECT_TRUE(outcome.startsWith("ERROR Could not create temporary image (actual) file '"))
        << outcome.toStdString();
}
