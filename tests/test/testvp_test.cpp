#include "test/testvp.h"

#include "qtbackend/qtinspector.h"
#include "support/filesizelimit.h"
#include "support/test.h"
#include "support/verification.h"

#include <QBuffer>
#include <QLabel>
#include <QTableWidget>
#include <QTextCodec>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray textCheck(const QByteArray &text, const QByteArray &object = "label",
                     const QByteArray &more = "")
{
    return "<Verification object='" + object + "' property='text' type='string' " + more +
           "><base64EncodedValue>" + text.toBase64() + "</base64EncodedValue></Verification>";
}

QByteArray tableCheck(const QByteArray &cell)
{
    return "<Verification object='table'><table hasText='1'><row><cell><text>" + cell +
           "</text></cell></row></table></Verification>";
}

QByteArray pictureCheck(const QImage &image)
{
    QBuffer png;
    image.save(&png, "PNG");
    return "<Verification object='label' type='PNG'>" + png.data().toBase64() + "</Verification>";
}

// An application side that gives the same answer to all calls.
class AnsweringInspector : public QtInspector
{
public:
    QVariant callFunction(const QString &, const QVariantList &, QString *error) override
    {
        *error = "the reason";
        return answer;
    }

    QVariant answer;
};

const char propertiesType[] = "version='5' type='ObjectProperties'";

} // namespace

class TestVPTest : public VerificationTest
{
protected:
    TestVPTest()
        : label("old")
    {
        label.setObjectName("label");
    }

    QLabel label;
};

TEST_F(TestVPTest, AFileThatCantBeProcessedLogsNothingAndSaysWhy)
{
    const char *const unread = "cannot be read.";
    const char *const tooDeep = "The elements are nested deeper than 500 levels.";
    const char *const unknown = "The entity '&nbsp;' is unknown.";
    const std::tuple<QByteArray, const char *, const char *> rows[] = {
        {"", unread, ""},
        {"<VerificationPoint>&nbsp;</VerificationPoint>", unread, ""},
        // Parsers know more names and encodings than these.
        {QByteArray("<:a>").repeated(200000) + QByteArray("</:a>").repeated(200000), unread,
         tooDeep},
        {QByteArray("\xff\xfe", 2) + QByteArray("<\0a\0>\0", 6).repeated(200000), unread, tooDeep},
        {"<!DOCTYPE v [<!ENTITY a 'aa'><!ENTITY b '&a;&a;'>]><VerificationPoint type='&b;'/>",
         unread, "The document type holds declarations."},
        {"<!DOCTYPE v SYSTEM 'v.dtd'><VerificationPoint>&nbsp;</VerificationPoint>", unread,
         unknown},
        {"<!DOCTYPE v SYSTEM 'v.dtd'><VerificationPoint type='&nbsp;'/>", unread, unknown},
        {"<VerificationPoint type='\xe9'/>", unread,
         "The file holds bytes that mean nothing in its encoding, UTF-8."},
        {"<Other/>", "is malformed.", "File does not contain 'VerificationPoint' root element"},
        {"<VerificationPoint version='6'/>", "Unsupported version in",
         "Verification point version 6 is greater than the maximum supported version 5"},
        {"<VerificationPoint version='99999999999'/>", "Unsupported version in", "99999999999"},
        {"<VerificationPoint version='5.5'/>", "is malformed.", "Version '5.5' is not a number"},
        {"<VerificationPoint version=''/>", "is malformed.", "Version '' is not a number"},
        {"<VerificationPoint type='Nonsense'><Verification object='label'/></VerificationPoint>",
         "Unknown verification type.", "type 'Nonsense' is not known by this Morvex version"},
        {"<VerificationPoint type='Table'><Verification object='a'/><Verification/>"
         "</VerificationPoint>",
         "Too many objects in VP file", "VP file contains more than a single object"},
    };
    for (const auto &[file, message, details] : rows) {
        const VPResult result = verifyFile(file);
        EXPECT_EQ(result.summary(), VPResult::SummaryError) << file.left(200).constData();
        EXPECT_TRUE(result.message().contains(message)) << result.message().toStdString();
        EXPECT_FALSE(result.details().isEmpty());
        EXPECT_TRUE(result.details().contains(details)) << result.details().toStdString();
        EXPECT_EQ(takeResults(), QStringList());
    }
    const VPResult missing =
        TestVP("vp", path("none.xml"))
            .verify(&log, stack, &runner, "", &resolver, options, nullptr, false);
    EXPECT_EQ(missing.message(), "Verification point file 'vp' cannot be opened.");
    EXPECT_FALSE(missing.details().isEmpty());
}

TEST_F(TestVPTest, ALongFileIsNotTakenForADeepOneAndAnUnknownTypeWithoutVerificationsPasses)
{
    const QByteArray rows = QByteArray("<Other> <x/> </Other>\n").repeated(600);
    const QByteArray root = "<VerificationPoint type='Nonsense'>" + rows;
    for (const char *start :
         {"", "<?xml version='1.1'?>", "<!DOCTYPE VerificationPoint SYSTEM 'v.dtd'>", "<?note?>"})
        EXPECT_EQ(verifyFile(start + root + "</VerificationPoint>").summary(),
                  VPResult::SummaryPassed)
            << start;
    for (const QByteArray &file : {root, root + "</VerificationPoint>junk"})
        EXPECT_FALSE(verifyFile(file).details().contains("nested"));
}

TEST_F(TestVPTest, AFileIsReadInTheEncodingItCameIn)
{
    const QString declaration = "<?xml version='1.0' encoding='%1'?>";
    const QString root = QString::fromUtf8("<VerificationPoint type='\u00e9'><Verification "
                                           "object='label'/></VerificationPoint>");
    const QByteArray files[] = {
        root.toUtf8(),
        "\xef\xbb\xbf" + root.toUtf8(),
        QTextCodec::codecForName("UTF-16")->fromUnicode(root),
        QTextCodec::codecForName("UTF-16")->fromUnicode(declaration.arg("UTF-16") + root),
        QTextCodec::codecForName("UTF-16BE")->fromUnicode(declaration.arg("UTF-16") + root).mid(2),
        (declaration.arg("ISO-8859-1") + root).toLatin1(),
        (declaration.arg("unheard-of") + root).toUtf8(),
    };
    for (const QByteArray &file : files)
        EXPECT_EQ(
            verifyFile(file).details(),
            QString::fromUtf8("Verification type '\u00e9' is not known by this Morvex version"))
            << file.constData();
}

TEST_F(TestVPTest, AResolverExcusesFilesWithSeveralObjects)
{
    QLabel other("new");
    other.setObjectName("other");
    resolver.severalObjects = true;
    EXPECT_EQ(verify(propertiesType, textCheck("old") + textCheck("new", "other")).summary(),
              VPResult::SummaryPassed);
}

TEST_F(TestVPTest, OutcomesAndExpectationsOfEachTypeGiveTheirResults)
{
    QTableWidget table(1, 1);
    table.setObjectName("table");
    table.setItem(0, 0, new QTableWidgetItem(" 1 "));
    const QImage shown = label.grab().toImage();
    const struct
    {
        TestResult::VPType type;
        const char *root;
        QByteArray body, otherBody;
        const char *name;
    } kinds[] = {
        {TestResult::PROPERTY_VP, "ObjectProperties", textCheck("old"), textCheck("new"),
         "Object property comparison of 'label.text' "},
        {TestResult::TABLE_VP, "Table", tableCheck(" [0-9] "), tableCheck("1"),
         "Table Comparison of 'table' "},
        {TestResult::SCREENSHOT_VP, "Screenshot", pictureCheck(shown),
         pictureCheck(shown.copy(0, 0, 1, 1)), "Screenshot comparison of 'label' "},
    };
    const std::tuple<bool, const char *, bool, const char *, VPResult::Summary> rows[] = {
        {true, "", false, "PASS", VPResult::SummaryPassed},
        {false, "", false, "FAIL", VPResult::SummaryFailed},
        {false, "xfail='true'", false, "XFAIL", VPResult::SummaryPassed},
        {false, "xfail='yes'", false, "FAIL", VPResult::SummaryFailed},
        {false, "", true, "XFAIL", VPResult::SummaryPassed},
        {true, "xfail='true'", false, "XPASS", VPResult::SummaryFailed},
        {true, "", true, "XPASS", VPResult::SummaryFailed},
    };
    for (const auto &kind : kinds) {
        for (const auto &[isEqual, xfail, isExpected, type, summary] : rows) {
            // Tables take expectations from the caller alone.
            if (*xfail && kind.type == TestResult::TABLE_VP)
                continue;
            SCOPED_TRACE(testing::Message() << kind.name << type << xfail);
            expectFail = isExpected;
            QByteArray body = isEqual ? kind.body : kind.otherBody;
            body.replace("<Verification ", QByteArray("<Verification ") + xfail + ' ');
            const VPResult result =
                verify("version='5' type='" + QByteArray(kind.root) + "'", body);
            EXPECT_EQ(result.summary(), summary);
            const QStringList results = takeResults();
            ASSERT_EQ(results.size(), 1);
            EXPECT_EQ(results[0].section(' ', 0, 0), type);
            EXPECT_TRUE(result.message().contains(kind.name)) << result.message().toStdString();
            EXPECT_EQ(results[0].section(' ', 1), result.message() + "|" + result.details());
            EXPECT_EQ(entries().back().vpType, kind.type);
            EXPECT_EQ(entries().back().tableDiff.isEmpty(),
                      isEqual || kind.type != TestResult::TABLE_VP);
        }
    }
}

TEST_F(TestVPTest, AFailureAndAnErrorAreRetriedUntilTheWidgetIsRight)
{
    options.setRetryDuration(60000);
    label.setObjectName("");
    resolver.beforeLookup = [this](int lookup) {
        if (lookup == 3)
            label.setObjectName("label");
        if (lookup == 5)
            label.setText("new");
    };
    EXPECT_EQ(verify(propertiesType, textCheck("new")).summary(), VPResult::SummaryPassed);
    const QStringList results = takeResults();
    ASSERT_EQ(results.size(), 2);
    EXPECT_EQ(results[0], "PASS vp: Object property comparison of 'label.text' passed|'new' and "
                          "'new' are equal");
    EXPECT_EQ(results[1], "WARNING vp: It took 5 attempts to verify prior verification|");
    const auto &all = entries();
    EXPECT_EQ(all[all.size() - 1].vpCounter, all[all.size() - 2].vpCounter);
    EXPECT_GT(all.back().vpCounter, 0);
    EXPECT_EQ(all.back().vpType, TestResult::PROPERTY_VP);
}

TEST_F(TestVPTest, OnlyTheLastOfManyAttemptsIsLogged)
{
    const auto attemptsFor = [this](int duration, const char *text) {
        options.setRetryDuration(duration);
        resolver.lookups = 0;
        verify(propertiesType, textCheck(text));
        return resolver.lookups;
    };
    attemptsFor(300, "new");
    EXPECT_EQ(takeResults().size(), 1);
    // Expected failures end the retrying, unexpected passes don't.
    expectFail = true;
    EXPECT_EQ(attemptsFor(60000, "new"), 1);
    resolver.beforeLookup = [this](int lookup) { label.setText(lookup == 3 ? "other" : "old"); };
    EXPECT_EQ(attemptsFor(60000, "old"), 3);
    EXPECT_EQ(attemptsFor(0, "old"), 1);
}

TEST_F(TestVPTest, SilentVerificationLogsErrorsAlone)
{
    options.setFlag(VerificationOptions::SilentVerification);
    const VPResult failed = verify(propertiesType, textCheck("new"));
    EXPECT_EQ(failed.summary(), VPResult::SummaryFailed);
    EXPECT_TRUE(failed.message().isEmpty());
    EXPECT_EQ(takeResults(), QStringList());
    EXPECT_EQ(entries().back().type, TestResult::START);

    // The message is that of the last result in the log.
    const QByteArray error =
        "<Verification object='label' property='none'><base64EncodedValue/></Verification>";
    const VPResult missing = verify(propertiesType, error + textCheck("new"));
    EXPECT_EQ(missing.message(), "vp: No such property");
    EXPECT_EQ(takeResults().size(), 1);
}

TEST_F(TestVPTest, StopOnFailEndsAtTheFirstFailure)
{
    const QByteArray checks = textCheck("old") + textCheck("new") + textCheck("old");
    EXPECT_EQ(verify(propertiesType, checks).summary(), VPResult::SummaryFailed);
    EXPECT_EQ(takeResults().size(), 3);
    options.setFlag(VerificationOptions::StopOnFail);
    const VPResult result = verify(propertiesType, checks);
    EXPECT_EQ(result.summary(), VPResult::SummaryFailed);
    EXPECT_EQ(result.details(), "'old' and 'new' are not equal");
    EXPECT_EQ(takeResults().size(), 2);
}

TEST_F(TestVPTest, OnlyFailuresCarryTheWholeStack)
{
    verify(propertiesType, textCheck("old"));
    EXPECT_EQ(entries().back().stack, std::vector<LineInfo>{stack.front()});
    verify(propertiesType, textCheck("new"));
    EXPECT_EQ(entries().back().stack, stack);
    EXPECT_EQ(entries().back().info, "info");
    EXPECT_EQ(entries().back().vpName, "vp");
    EXPECT_EQ(entries().back().vpFile.fileName(), "vp.xml");
    expectFail = true;
    verify(propertiesType, textCheck("new"));
    EXPECT_EQ(entries().back().stack.size(), 1u);
}

TEST_F(TestVPTest, TheOptionsSayWhichResultsGetAPicture)
{
    using Flag = VerificationOptions::Flag;
    const std::tuple<TestResult::ResultType, int, const char *> rows[] = {
        {TestResult::PASS, VerificationOptions::ScreenshotOnPass, "passedImages/passed_1.png"},
        {TestResult::XFAIL, VerificationOptions::ScreenshotOnPass, "passedImages/passed_2.png"},
        {TestResult::FAIL, VerificationOptions::ScreenshotOnFail, "failedImages/failed_1.png"},
        {TestResult::XPASS, VerificationOptions::ScreenshotOnFail, "failedImages/failed_2.png"},
        {TestResult::WARNING, VerificationOptions::ScreenshotOnWarning,
         "warnedImages/warned_1.png"},
        {TestResult::ERROR, VerificationOptions::ScreenshotOnError, "errorImages/error_1.png"},
        {TestResult::FATAL, VerificationOptions::ScreenshotOnError, "unknownImages/unknown_1.png"},
        {TestResult::LOG, 0, "logImages/log_1.png"},
    };
    for (const auto &[type, wantedFlag, file] : rows) {
        VerificationOptions wanted;
        for (int flag = 1; flag <= 32; flag *= 2) {
            wanted = VerificationOptions();
            wanted.setFlag(Flag(flag));
            EXPECT_EQ(TestVP::wantLogScreenshotForResult(wanted, type), flag == wantedFlag);
        }
        EXPECT_EQ(TestVP::logScreenshot(&runner, type, label.grab().toImage()),
                  " (Screenshot in \"" + path(QString("suite/tst_a/") + file) + "\")");
        EXPECT_TRUE(QFile::exists(path(QString("suite/tst_a/") + file)));
    }
    const QImage picture = label.grab().toImage();
    const FileSizeLimit full(10);
    EXPECT_EQ(TestVP::logScreenshot(&runner, TestResult::PASS, picture),
              " (Invalid file path \"" + path("suite/tst_a/passedImages/passed_3.png") +
                  "\" or unsupported image format)");
}

TEST_F(TestVPTest, AFailureLogsAPictureOfTheDesktopInTheResultDirectory)
{
    label.show();
    options.setFlag(VerificationOptions::ScreenshotOnFail);
    runner.results = path("results");
    verify(propertiesType, textCheck("new"));
    const QString file = path("results/suite/tst_a/failedImages/failed_1.png");
    EXPECT_EQ(entries().back().message,
              "vp: Object property comparison of 'label.text' failed (Screenshot in \"" + file +
                  "\")");
    EXPECT_FALSE(QImage(file).isNull());

    writeFile(path("blocked"), "a file where the directory should be");
    runner.results = path("blocked");
    verify(propertiesType, textCheck("new"));
    EXPECT_EQ(entries().back().message, "vp: Object property comparison of 'label.text' failed");
}

TEST_F(TestVPTest, PicturesOfObjectsGoToFilesOrGiveTheReason)
{
    const SharedPtr<Object> object = inspector.findObject("label", nullptr);
    EXPECT_EQ(TestVP::grabWindow(object, path("a.png"), "PNG", 0), QString());
    EXPECT_EQ(QImage(path("a.png")).size(), label.size());
    EXPECT_TRUE(TestVP::grabWindow({}, path("b.png"), "PNG", 0).endsWith("no such object"));
    const QString unsaved = TestVP::grabWindow(object, path("none/a.png"), "PNG", 0);
    EXPECT_TRUE(unsaved.endsWith("' and format = '" + path("none/a.png") + "' failed!\n"))
        << unsaved.toStdString();
}

TEST_F(TestVPTest, AnAnswerThatIsNoPictureIsReportedByItsKind)
{
    AnsweringInspector answering;
    Inspector::install(&answering);
    const std::pair<QVariant, const char *> rows[] = {
        {QVariant(), "TestVP::grabObjectScreenshot: calling grabObjectScreenshot returned invalid "
                     "variant! the reason"},
        {QVariant(QVariant::String), "TestVP::grabObjectScreenshot: calling grabObjectScreenshot "
                                     "returned null variant! the reason"},
        {QVariant("text"), "TestVP::grabObjectScreenshot: calling grabObjectScreenshot returned "
                           "non-screenshot variant!"},
        {QVariant(QVariantMap()),
         "grabObjectScreenshot: calling grabObjectScreenshot returned an invalid image!"},
    };
    for (const auto &[answer, error] : rows) {
        answering.answer = answer;
        EXPECT_EQ(TestVP::grabWindow(answering.makeInt(1), path("a.png"), "PNG", 0), error);
        EXPECT_EQ(TestVP::logScreenshot(&runner, TestResult::PASS, QImage()),
                  " (Screenshot taken from the desktop is invalid)");
    }
}

TEST(VerificationOptionsTest, AFlagIsSetWhenAllOfItsBitsAre)
{
    VerificationOptions options;
    EXPECT_TRUE(options.testFlag(VerificationOptions::Flag(0)));
    options.setFlag(VerificationOptions::StopOnFail, true);
    EXPECT_FALSE(options.testFlag(VerificationOptions::Flag(0)));
    EXPECT_FALSE(options.testFlag(VerificationOptions::Flag(33)));
    options.setFlag(VerificationOptions::SilentVerification);
    EXPECT_TRUE(options.testFlag(VerificationOptions::Flag(33)));
    options.setFlag(VerificationOptions::StopOnFail, false);
    EXPECT_EQ(options.flags(), 1);
}
