#include "test/tablevp.h"

#include "shared/xmltablerange.h"
#include "support/filesizelimit.h"
#include "support/test.h"
#include "support/verification.h"

#include <QTableWidget>

using namespace Morvex;
using namespace MorvexTest;

namespace {

QByteArray row(const QStringList &cells)
{
    QByteArray xml = "<row>";
    for (const QString &cell : cells)
        xml += "<cell><text>" + cell.toHtmlEscaped().toUtf8() + "</text></cell>";
    return xml + "</row>";
}

QByteArray table(const QByteArray &rows, const QByteArray &object = "table")
{
    return "<Verification object='" + object + "'><table hasText='1'>" + rows +
           "</table></Verification>";
}

const char tableType[] = "version='5' type='Table'";

} // namespace

class TableVPTest : public VerificationTest
{
protected:
    TableVPTest()
        : widget(2, 2)
    {
        widget.setObjectName("table");
        for (int i = 0; i < 4; ++i)
            widget.setItem(i / 2, i % 2, new QTableWidgetItem(QString(" %1 ").arg(i)));
    }

    const QByteArray present = row({" 0 ", " 1 "}) + row({" 2 ", " 3 "});
    QTableWidget widget;
};

TEST_F(TableVPTest, WhatIsNoTableIsAnError)
{
    QWidget other;
    other.setObjectName("other");
    verify(tableType, table(present, "other"));
    verify(tableType, table(present, "none"));
    EXPECT_EQ(takeResults(),
              (QStringList{"ERROR vp: Invalid object type|Object 'other' is not a table",
                           "ERROR vp: No such object 'none'|There is no object {name='none'}."}));
    EXPECT_EQ(createTableXmlFile(inspector.findObject("other", nullptr), path("a.xml")),
              "Object does not support fetching table content");
}

TEST_F(TableVPTest, AnExpectationThatIsNoTableFailsWhateverItsTextSays)
{
    for (const char *body :
         {"<Verification object='table'><other/></Verification>", "<Verification object='table'/>"})
        EXPECT_EQ(verify(tableType, body).summary(), VPResult::SummaryFailed) << body;
    options.setFlag(VerificationOptions::SilentVerification);
    takeResults();
    EXPECT_EQ(verify(tableType, table("")).summary(), VPResult::SummaryFailed);
    EXPECT_EQ(takeResults(), QStringList());
}

TEST_F(TableVPTest, LearningReplacesATableThatDiffersAndNoOther)
{
    const EnvironmentGuard learn("MORVEX_LEARN_SCREENSHOTS", "1");
    verify(tableType, table(present));
    EXPECT_TRUE(takeResults().first().startsWith("PASS "));
    EXPECT_TRUE(pointFile().contains(table(present)));
    // What else the file holds stays in it.
    const QByteArray more =
        "<!--note--><Other a=\"&lt;\xf0\x9f\x98\x80\"><![CDATA[<]]></Other><?do it?>";
    const QByteArray type = "<!DOCTYPE VerificationPoint PUBLIC 'p' 's'>";
    verifyFile(type + "<VerificationPoint " + tableType + ">" + table(row({"x"})) + more +
               "</VerificationPoint>");
    takeResults();
    EXPECT_TRUE(pointFile().replace("\n", "").replace("    ", "").contains(more))
        << pointFile().constData();
    EXPECT_TRUE(pointFile().contains(type)) << pointFile().constData();

    widget.item(0, 0)->setText(QString::fromUtf8(" <\xc3\xa4&\x01 "));
    const std::pair<QByteArray, const char *> rows[] = {
        {table(present), "Table contents do not match expectation."},
        {"<Verification object='table'><other/></Verification>",
         "Table contents appear to be equal."},
        {"<Verification object='table'/>", "Table contents appear to be equal."},
    };
    for (const auto &[body, details] : rows) {
        EXPECT_EQ(verify(tableType, body).summary(), VPResult::SummaryPassed);
        EXPECT_EQ(takeResults(),
                  QStringList(QString("WARNING vp: Table Comparison of 'table' failed. The "
                                      "Verification Point was updated due to the "
                                      "MORVEX_LEARN_SCREENSHOTS environment variable|") +
                              details));
        verifyFile(pointFile());
        EXPECT_TRUE(takeResults().first().startsWith("PASS ")) << pointFile().constData();
    }
}

TEST_F(TableVPTest, LearningWhatWasToFailFailsAndIsSavedUnlessThatEndsIt)
{
    const EnvironmentGuard learn("MORVEX_LEARN_SCREENSHOTS", "1");
    expectFail = true;
    for (const bool stopOnFail : {true, false}) {
        options.setFlag(VerificationOptions::StopOnFail, stopOnFail);
        EXPECT_EQ(verify(tableType, table(row({"x"}))).summary(), VPResult::SummaryFailed);
        EXPECT_TRUE(takeResults().first().startsWith("WARNING "));
        EXPECT_EQ(pointFile().contains(table(row({"x"}))), stopOnFail);
    }
}

TEST_F(TableVPTest, ALearnedTableMatchesWhateverItsCellsHold)
{
    const char *const texts[] = {"   ", "\xc2\xa0",        "\n",  "\t x ", "a\rb",    "a\r\nb",
                                 "]]>", "&amp;",           "<b>", "a(b",   "C++ [x]", "*",
                                 "",    "\xf0\x9f\x98\x80"};
    for (const char *text : texts) {
        widget.item(1, 0)->setText(QString::fromUtf8(text));
        {
            const EnvironmentGuard learn("MORVEX_LEARN_SCREENSHOTS", "1");
            verify(tableType, table(row({"x"})));
        }
        takeResults();
        verifyFile(pointFile());
        EXPECT_TRUE(takeResults().first().startsWith("PASS ")) << text << pointFile().constData();
    }
}

TEST_F(TableVPTest, AFileThatCouldNotBeWrittenIsAnErrorInTheLog)
{
    const EnvironmentGuard learn("MORVEX_LEARN_SCREENSHOTS", "1");
    widget.item(0, 0)->setText(QString(20000, 'y'));
    const FileSizeLimit full(10000);
    const VPResult result = verify(tableType, table(row({"x"})));
    EXPECT_EQ(result.summary(), VPResult::SummaryPassed);
    EXPECT_TRUE(result.message().contains("was updated"));
    EXPECT_TRUE(pointFile().contains(table(row({"x"}))));
    const QStringList results = takeResults();
    ASSERT_EQ(results.size(), 2);
    EXPECT_TRUE(results[1].startsWith("ERROR vp: The Verification Point could not be saved|Could "
                                      "not write '" +
                                      path("suite/tst_a/points/vp.xml") + "': "))
        << results[1].toStdString();
}

TEST_F(TableVPTest, AFileThatCantBeOpenedForWritingLearnsNothingWithoutAnError)
{
    const EnvironmentGuard learn("MORVEX_LEARN_SCREENSHOTS", "1");
    resolver.beforeLookup = [this](int) {
        QFile::remove(path("suite/tst_a/points/vp.xml"));
        QDir().mkpath(path("suite/tst_a/points/vp.xml"));
    };
    EXPECT_EQ(verify(tableType, table(row({"x"}))).summary(), VPResult::SummaryPassed);
    EXPECT_EQ(takeResults().size(), 1);
}

TEST_F(TableVPTest, TheContentIsWrittenAsAFileAndReadBack)
{
    widget.item(1, 1)->setBackground(Qt::red);
    ASSERT_EQ(createTableXmlFile(inspector.findObject("table", nullptr), path("a.xml")), QString());
    const QByteArray file = readFile(path("a.xml"));
    EXPECT_FALSE(file.contains("backgroundColor"));
    XmlTableRange range;
    ASSERT_TRUE(range.loadContentFromXml(file.toStdString()));
    EXPECT_EQ(range.text(1, 1), " 3 ");
    ASSERT_EQ(retrieveTableContent(inspector.findObject("table", nullptr), &range), QString());
    EXPECT_EQ(range.backgroundColor(1, 1), (TableRange::Color{255, 255, 0, 0}));
    EXPECT_EQ(range.backgroundColor(0, 0), TableRange::Color());
    for (const QString &unwritable : {path("no/a.xml"), QString("/dev/full")})
        EXPECT_NE(createTableXmlFile(inspector.findObject("table", nullptr), unwritable), "");
}

TEST_F(TableVPTest, BlanksBetweenTheElementsOfAFileDontCount)
{
    widget.setRowCount(0);
    EXPECT_EQ(verify(tableType, table("\n ")).summary(), VPResult::SummaryPassed);
}
