#include "test/testconfig.h"

#include "support/recordinggenerator.h"
#include "support/test.h"
#include "test/testcase.h"
#include "test/testresult.h"

using namespace Morvex;
using namespace MorvexTest;

namespace {

const QByteArray information =
    "<information><summary>sum</summary><description>desc</description></information>";

QByteArray config(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?><testconfig>" + content + "</testconfig>";
}

class TestConfigTest : public testing::Test
{
protected:
    QString read(const QByteArray &xml)
    {
        writeFile(path, xml);
        return tryReadTestConfig(path, &summary, &description, &tags, &settings, &passwords);
    }

    QTemporaryDir dir;
    const QString path = dir.filePath("config.xml");
    QString summary = "before";
    QString description = "before";
    QStringList tags{"before"};
    QMap<QString, QString> settings{{"before", "x"}};
    QMap<QString, QString> passwords{{"before", "x"}};
};

} // namespace

TEST_F(TestConfigTest, EverythingThatAFileCanHold)
{
    EXPECT_EQ(read("<!-- c --><testconfig><!-- c -->"
                   "<information><summary>gr\xc3\xbc\xc3\x9f &amp; co</summary>"
                   "<description/><other/></information>"
                   "<passwords><password name=\"p\">c2VjcmV0</password>"
                   "<password name=\"empty\"/><password name=\"p\">bGFzdA==</password></passwords>"
                   "<tags><tag>b</tag><tag>a</tag><tag>b</tag><tag/></tags>"
                   "<unknown/><testsettings><any>1</any><other>2</other><any>3</any>"
                   "</testsettings></testconfig>"),
              "");
    EXPECT_EQ(summary, QString::fromUtf8("grüß & co"));
    EXPECT_EQ(description, "");
    EXPECT_EQ(tags, (QStringList{"b", "a", "b", ""}));
    EXPECT_EQ(settings, (QMap<QString, QString>{{"any", "3"}, {"other", "2"}}));
    EXPECT_EQ(passwords, (QMap<QString, QString>{{"empty", ""}, {"p", "last"}}));
}

TEST_F(TestConfigTest, AMissingFileIsNoErrorAndChangesNothing)
{
    EXPECT_EQ(
        tryReadTestConfig("/no/such/config.xml", &summary, &description, &tags, nullptr, nullptr),
        "");
    EXPECT_EQ(summary, "before");
    EXPECT_EQ(tags, QStringList("before"));
}

TEST_F(TestConfigTest, ErrorsSayWhatWasExpectedWhereAndChangeNothing)
{
    const std::pair<QByteArray, const char *> rows[] = {
        {"<testconfig>\n\n    <tags/></testconfig>",
         "3:5: expected information element; got tags element"},
        {"<other/>", "1:1: expected testconfig element; got other element"},
        {"<testconfig/>", "expected information element"},
        {"<testconfig><information><description/></information></testconfig>",
         "1:26: expected summary element; got description element"},
        {"<testconfig><information><summary>s</summary></information></testconfig>",
         "expected description element"},
        {"<testconfig>" + information + "<tags><tag>a</tag><x/></tags></testconfig>",
         "1:111: expected tag element; got x element"},
        {config(information + "<testsettings><empty></empty></testsettings>"),
         "No value could be found for TestSettings property 'empty'.\n"},
        {config(information + "<passwords><password>x</password></passwords>"),
         "Nameless password specificed in TestSettings.\n"},
        {"", "Error document empty."},
        {"<testconfig>", "Error reading Element value."},
        {config(information + QByteArray("\0", 1)), "The document holds a zero byte."},
        {config(information + QByteArray("<a>").repeated(200000)),
         "The elements are nested deeper than 500 levels."},
    };
    for (const auto &[xml, error] : rows) {
        EXPECT_EQ(read(xml), error) << xml.left(200).constData();
        EXPECT_EQ(summary, "before");
        EXPECT_EQ(description, "before");
        EXPECT_EQ(tags, QStringList("before"));
        EXPECT_TRUE(settings.contains("before"));
        EXPECT_TRUE(passwords.contains("before"));
    }
}

namespace {

class RecordedTestCase : public TestCase
{
public:
    using TestCase::TestCase;

    bool init() override
    {
        calls += "init";
        return canRun;
    }
    void execute() override { calls += "execute"; }
    bool cleanup() override
    {
        calls += "cleanup";
        return true;
    }

    bool canRun = true;
    QStringList calls;
};

} // namespace

TEST(TestCaseTest, TheMetadataStartsTheLog)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("tst_a/config.xml"), config(information + "<tags><tag>t</tag></tags>"));
    auto *recorder = new RecordingGenerator;
    TestResult result(recorder);
    RecordedTestCase testCase(&result, QDir(dir.filePath("tst_a")));
    EXPECT_EQ(testCase.name(), "tst_a");
    EXPECT_EQ(testCase.tags(), QStringList("t"));
    ASSERT_EQ(recorder->entries.size(), 1U);
    EXPECT_EQ(recorder->entries[0].name, "tst_a");
    EXPECT_EQ(recorder->entries[0].summary, "sum");
    EXPECT_EQ(recorder->entries[0].line.fileName(), dir.filePath("tst_a"));
    testCase.run(false);
    EXPECT_FALSE(result.isComplete());
    testCase.run(true);
    EXPECT_TRUE(result.isComplete());
    EXPECT_EQ(recorder->entries.size(), 2U);
}

TEST(TestCaseTest, CleanupFollowsAFailedInit)
{
    TestResult result(new RecordingGenerator);
    RecordedTestCase testCase(&result, "tst_a");
    testCase.canRun = false;
    testCase.run(false);
    EXPECT_EQ(testCase.calls, (QStringList{"init", "cleanup"}));
    testCase.canRun = true;
    testCase.run(false);
    EXPECT_EQ(testCase.calls.mid(2), (QStringList{"init", "execute", "cleanup"}));
}

TEST(TestCaseTest, AFileByNameServesATestCaseWithoutDirectory)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("tst_a/config.xml"), config(information));
    const QString before = QDir::currentPath();
    QDir::setCurrent(dir.path());
    TestResult result(new RecordingGenerator);
    const RecordedTestCase testCase(&result, "tst_a");
    QDir::setCurrent(before);
    EXPECT_EQ(testCase.summary(), "sum");
}

TEST(TestCaseTest, BrokenMetadataIsAWarning)
{
    QTemporaryDir dir;
    writeFile(dir.filePath("config.xml"), "<x/>");
    TestResult result(new RecordingGenerator);
    const std::string warning =
        standardErrorOf([&] { RecordedTestCase(&result, QDir(dir.path())).run(true); });
    EXPECT_NE(warning.find("error while reading configuration file " +
                           dir.filePath("config.xml").toStdString() +
                           ": 1:1: expected testconfig element; got x element"),
              std::string::npos);
    EXPECT_TRUE(result.isComplete());
}
