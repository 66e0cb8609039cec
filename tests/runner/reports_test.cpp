// Every report format on runs of the real runner, read back by readers of others.

#include "support/reportcounts.h"
#include "support/runnerprocess.h"
#include "support/test.h"

#include <QDeadlineTimer>
#include <QProcess>

#include <csignal>
#include <functional>

using namespace MorvexTest;

namespace {

// What a hard suite may hold: nested sections left open, a crash inside one, retries that mend,
// expected failures and unexpected passes, texts that formats have to clean and names that they
// have to encode.
const QByteArray hardScript =
    "section('outer', function () {\n"
    "  startSection('left <open> & \"named\"', 'd');\n"
    "  check.equal('\\u0000\\u001b[31mred\\ufffe]]>\\ud800', 'x', 'Control characters');\n"
    "  check.that(false, 'known', {expectFail: true});\n"
    "  check.that(true, 'surprise', {expectFail: true});\n"
    "  log.warning('w', new Array(1000001).join('long '));\n"
    "});\n"
    "log.error('e');\n";
const QByteArray flakyScript = "var again = file.exists('second'); file.write('second', '');\n"
                               "check.that(again, 'Works at the second attempt');\n";

class ReportsTest : public testing::Test
{
protected:
    ReportsTest()
    {
        runner.addTestCase("tst_hard.name with blanks", hardScript);
        runner.addTestCase("tst_flaky", flakyScript);
        runner.addTestCase("tst_crash", "section('s', function () { log.info('l'); "
                                        "abortProcess(); });");
        runner.addTestCase("tst_skipped", "");
    }

    QString path(const QString &name) const
    {
        return QDir::cleanPath(runner.suitePath() + "/../" + name);
    }

    // Runs the suite with the report values and a console report beside them, whose counts it
    // gives.
    Counts run(const QStringList &values)
    {
        QFile::remove(runner.suitePath() + "/tst_flaky/second");
        QFile::remove(path("console.txt"));
        QStringList options{"--retry",     "1",           "--skip",
                            "tst_skipped", "--reportgen", "stdout," + path("console.txt")};
        for (const QString &value : values)
            options << "--reportgen" << value;
        const RunnerOutput output = runner.runSuite(options);
        EXPECT_EQ(output.status, 1) << output.standardError.constData();
        EXPECT_EQ(output.standardOutput, "");
        return countsOfConsole(readFile(path("console.txt")));
    }

    // Runs until the 100 entries of the script are in the report file, then kills the runner.
    void killRun(const QString &value, const QString &reportFile)
    {
        runner.addTestCase("tst_a_endless",
                           "for (var i = 0; i < 100; ++i) log.info('entry ' + i);\n"
                           "for (;;) {}");
        const QByteArray before = readFile(reportFile);
        QProcess process;
        process.setProcessEnvironment(runner.environment);
        process.start(RunnerProcess::program(), {"--reportgen", value, runner.suitePath()});
        const QDeadlineTimer limit(60000);
        while (!readFile(reportFile).mid(before.size()).contains("entry 99") &&
               !limit.hasExpired() && !process.waitForFinished(10))
            ;
        process.kill();
        ASSERT_TRUE(process.waitForFinished());
    }

    void expectSame(const Counts &counts, const Counts &console, const char *format) const
    {
        EXPECT_FALSE(counts.empty()) << format;
        for (const auto &[key, count] : counts)
            EXPECT_EQ(count, console.at(key)) << format << ' ' << key;
    }

    RunnerProcess runner;
};

} // namespace

TEST_F(ReportsTest, EveryEntryOfAKilledRunIsInAnXml3ReportInWholeLines)
{
    killRun("xml3.5," + path("xml3"), path("xml3/results.xml"));
    const QByteArray report = readFile(path("xml3/results.xml"));
    EXPECT_TRUE(report.endsWith('\n'));
    for (int i = 0; i < 100; ++i)
        EXPECT_TRUE(report.contains("<![CDATA[entry " + QByteArray::number(i) + "]]>")) << i;
    EXPECT_EQ(XmlDocument(report, XmlDocument::Recover).error(), "");
}

TEST_F(ReportsTest, AKilledWebReportKeepsItsEarlierRunsAndIsRepaired)
{
    const Counts console = run({"html," + path("web")});
    const QByteArray before = readFile(path("web/data/results-v1.js"));
    killRun("html," + path("web"), path("web/data/results-v1.js"));
    const QByteArray killed = readFile(path("web/data/results-v1.js"));
    EXPECT_TRUE(killed.startsWith(before));
    EXPECT_TRUE(killed.contains("entry 99"));

    const RunnerOutput repair = runner.run({"--repair-report", path("web")});
    EXPECT_EQ(repair.status, 0) << repair.standardError.constData();
    const QByteArray repaired = readFile(path("web/data/results-v1.js"));
    EXPECT_TRUE(repaired.startsWith(before));
    EXPECT_EQ(countsOfWebReport(repaired)["fatals"], 0);
    EXPECT_TRUE(repaired.mid(before.size()).contains("\"ended\":false"));

    // A run that appends repairs by itself.
    QDir(runner.suitePath() + "/tst_a_endless").removeRecursively();
    killRun("html," + path("web"), path("web/data/results-v1.js"));
    QDir(runner.suitePath() + "/tst_a_endless").removeRecursively();
    expectSame(console, run({"html," + path("web")}), "second run");
    const QByteArray all = readFile(path("web/data/results-v1.js"));
    EXPECT_EQ(all.count("\"ended\":false"), 2);
    EXPECT_EQ(all.count("data.push( "), 4);
    EXPECT_EQ(runner.run({"--repair-report", path("none")}).status, 2);
}
