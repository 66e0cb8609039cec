#include "test/htmlreportgenerator.h"

#include "support/runs.h"
#include "support/test.h"
#include "test/webreport/webreportrepair.h"

#include <QDirIterator>

#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

class HtmlReportGeneratorTest : public testing::Test
{
protected:
    HtmlReportGeneratorTest() { writeFile(prefix.filePath("lib/webreport/index.html"), "page"); }

    TestReportGenerator::Result create()
    {
        QString resultDir;
        return HtmlReportGenerator::create(report, TestReportGenerator::TEST_SUITE, &resultDir);
    }

    void run(const std::vector<TestResult::Entry> &entries)
    {
        replay(entries, makeReport("html," + report).get());
    }

    QByteArray data() const { return readFile(report + "/data/results-v1.js"); }

    QTemporaryDir prefix;
    EnvironmentGuard prefixVariable{"MORVEX_PREFIX", QFile::encodeName(prefix.path())};
    QTemporaryDir dir;
    QString report = dir.filePath("sub/report");
};

bool hasFile(const QString &directory, const QString &name)
{
    return QDirIterator(directory, {name}, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories)
        .hasNext();
}

const char shortRun[] = R"(data.push( {"version":{"major":1,"minor":2},"tests":[{"name":"suite_a",)"
                        R"("start":"2024-02-29T23:59:58+01:00","type":"testsuite","tests":[],)"
                        R"("stop":"2024-02-29T23:59:58+01:00"}]} );)"
                        "\n\n";

} // namespace

TEST_F(HtmlReportGeneratorTest, EachRunAddsAStatementAndThePagesStayAsTheyAre)
{
    run(runOfMessages({}));
    EXPECT_EQ(data(), QByteArray("var data = [];\n") + shortRun);
    EXPECT_EQ(readFile(report + "/index.html"), "page");
    writeFile(report + "/index.html", "changed");
    run(runOfMessages({}));
    EXPECT_EQ(data(), QByteArray("var data = [];\n") + shortRun + shortRun);
    EXPECT_EQ(readFile(report + "/index.html"), "changed");
}

TEST_F(HtmlReportGeneratorTest, ARunThatNeverStartedLeavesTheReportAsItWas)
{
    run(runOfMessages({}));
    const QByteArray before = data();
    run({});
    EXPECT_EQ(data(), before);
}

TEST_F(HtmlReportGeneratorTest, NothingWritesIntoTheStatementOfARun)
{
    run(runOfMessages({}));
    writeFile(report + "/data/results-v1.js", data().chopped(20));
    const std::unique_ptr<TestReportGenerator> generator(create().generator);
    ASSERT_TRUE(generator);
    generator->handleEntry(plainEntry(TestResult::START));
    const QByteArray before = data();
    const TestReportGenerator::Result second = create();
    EXPECT_EQ(second.generator, nullptr);
    const QString inUse =
        QString("'%1/data/results-v1.js' is being written or repaired by another process")
            .arg(report);
    EXPECT_EQ(second.error, inUse + "; wait for its end or give another directory");
    EXPECT_EQ(repairWebReport(report).error, inUse);
    EXPECT_EQ(data(), before);
}

TEST_F(HtmlReportGeneratorTest, AReportThatWasInterruptedWhileItWasMadeDoesNotBlockItsDirectory)
{
    const QString part = prefix.filePath("lib/webreport/part");
    ASSERT_EQ(::mkfifo(QFile::encodeName(part).constData(), 0600), 0);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        create();
        ::_exit(0);
    }
    // The copy waits for somebody to write into the second file.
    while (!hasFile(dir.path(), "index.html") && ::waitpid(child, nullptr, WNOHANG) == 0)
        ::usleep(1000);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ASSERT_TRUE(QFile::remove(part));
    EXPECT_FALSE(QDir(report).exists());
    run(runOfMessages({}));
    EXPECT_EQ(data(), QByteArray("var data = [];\n") + shortRun);
    EXPECT_EQ(QDir(dir.path()).entryList({".*.new-*"}, QDir::Dirs | QDir::Hidden), QStringList());
}

TEST_F(HtmlReportGeneratorTest, RunsThatBeginAtTheSameTimeMakeOneReport)
{
    std::vector<pid_t> children;
    for (int i = 0; i < 8; ++i) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const TestReportGenerator::Result created = create();
            const bool isMade = created.generator || created.error.contains("by another process");
            ::_exit(isMade ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(QDir(dir.path()).entryList({".*.new-*"}, QDir::Dirs | QDir::Hidden), QStringList());
    EXPECT_EQ(readFile(report + "/index.html"), "page");
}

TEST_F(HtmlReportGeneratorTest, ADirectoryOfAPersonIsNotTakenForALeftover)
{
    writeFile(dir.filePath(QFileInfo(report).fileName().prepend('.') + ".new-backup/x"), "x");
    run(runOfMessages({}));
    EXPECT_EQ(QDir(dir.path()).entryList({".*.new-*"}, QDir::Dirs | QDir::Hidden).size(), 1);
}

TEST_F(HtmlReportGeneratorTest, ADirectoryThatIsNoReportIsLeftAlone)
{
    writeFile(report + "/precious", "x");
    EXPECT_EQ(create().error,
              QStringLiteral("Directory '%1' exists but does not contain result file").arg(report));
    EXPECT_EQ(QDir(report).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
              QStringList("precious"));
}

TEST_F(HtmlReportGeneratorTest, MissingPagesAreAnErrorThatTheNextAttemptGivesToo)
{
    const EnvironmentGuard noPrefix("MORVEX_PREFIX", QByteArray());
    for (int attempt = 0; attempt < 2; ++attempt)
        EXPECT_EQ(create().error, "Error while copying web report templates: Source directory "
                                  "'/lib/webreport' does not exist");
}

TEST_F(HtmlReportGeneratorTest, AReportThatCanNotBeRepairedStillTakesARun)
{
    writeFile(report + "/data/results-v1.js", "something else\n");
    const std::string errors = standardErrorOf([&] { run(runOfMessages({})); });
    EXPECT_EQ(errors, QStringLiteral("morvexrunner: '%1/data/results-v1.js' is not the data file "
                                     "of a web report\n")
                          .arg(report)
                          .toStdString());
    EXPECT_EQ(data(), QByteArray("something else\n") + shortRun);
}
