#include "support/runnerprocess.h"
#include "support/test.h"

#include <QByteArrayList>

using namespace MorvexTest;

TEST(ExampleSuitesTest, ShowEachKindOfResultAndLeaveTheirFilesAlone)
{
    const QString examples = MORVEX_SOURCE_DIR "/examples/";
    const std::tuple<QStringList, QByteArrayList, QStringList> rows[] = {
        {{"--skip", "tst_skipped", "--timeout", "2", "--retry", "1", examples + "demo_suite"},
         {"passed when retried: tst_flaky\nmorvexrunner: slowest: tst_timeout (",
          "10 test cases, 4 failed, 1 passed when retried, 1 skipped in "},
         {"PASS", "FAIL", "XFAIL", "ERROR", "FATAL", "WARNING"}},
        {{examples + "inventory_suite"}, {"morvexrunner: 6 test cases, 0 failed"}, {"XFAIL"}},
    };
    for (const auto &[arguments, said, types] : rows) {
        QTemporaryDir temporary;
        RunnerProcess runner;
        runner.environment.insert("TMPDIR", temporary.path());
        const RunnerOutput output = runner.run(arguments);
        for (const QByteArray &part : said)
            EXPECT_TRUE(output.standardError.contains(part)) << output.standardError.constData();
        const QStringList results = RunnerProcess::resultsOf(output);
        for (const QString &type : types)
            EXPECT_FALSE(results.filter(QRegExp("^" + type + " ")).isEmpty()) << type.toStdString();
    }
    EXPECT_FALSE(QDir(examples + "inventory_suite/points/failedImages").exists());
}
