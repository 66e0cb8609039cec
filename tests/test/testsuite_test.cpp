#include "test/testsuite.h"

#include "support/fakerunner.h"
#include "support/recordinggenerator.h"
#include "support/test.h"
#include "test/cancellation.h"
#include "test/testresult.h"

#include <QThread>

using namespace Morvex;
using namespace MorvexTest;

namespace {

const QByteArray configOfTags =
    "<testconfig><information><summary/><description/></information><tags>%1</tags></testconfig>";

class TestSuiteTest : public testing::Test
{
protected:
    TestSuite load(const QByteArray &conf, const QString &group = {})
    {
        writeFile(dir.filePath("suite.conf"), conf);
        return TestSuite(QDir(dir.path()), group);
    }

    void addTestCase(const QString &name, const QByteArrayList &tags = {})
    {
        QDir(dir.path()).mkdir(name);
        if (tags.isEmpty())
            return;
        QByteArray xml;
        for (const QByteArray &tag : tags)
            xml += "<tag>" + tag + "</tag>";
        writeFile(dir.filePath(name + "/config.xml"), QByteArray(configOfTags).replace("%1", xml));
    }

    // "TYPE|message|details" of each entry, with the number of retries in place of the details of
    // a start.
    QStringList run(TestSuite &suite, const QStringList &testCases = {}, unsigned int retries = 0,
                    bool stopOnFail = false, unsigned int randomSeed = 0)
    {
        auto *recorder = new RecordingGenerator;
        TestResult result(recorder);
        suite.run("h", 1, &result, testCases, "", 0, 20, stopOnFail, retries, randomSeed, {},
                  false);
        isComplete = result.isComplete();
        QStringList lines;
        for (const TestResult::Entry &entry : recorder->entries)
            lines += TestResult::resultToString(entry.type) + "|" + entry.message + "|" +
                     (entry.type == TestResult::START_TEST_CASE ? QString::number(entry.retry)
                                                                : entry.details);
        return lines;
    }

    QStringList order(const QStringList &lines) const
    {
        QStringList names;
        for (const QString &line : lines) {
            if (line.startsWith("START_TEST_CASE|Start 'tst_"))
                names += line.section('\'', 1, 1);
        }
        return names;
    }

    QTemporaryDir dir;
    bool isComplete = false;
};

using TestSuiteDeathTest = TestSuiteTest;

} // namespace

TEST_F(TestSuiteTest, NumbersAndSwitches)
{
    const std::tuple<const char *, int, bool, int> rows[] = {
        {"", 1, true, 1},
        {"VERSION = 0", 1, true, 1},
        {"VERSION = -3", 1, true, 1},
        {"VERSION = abc", 1, true, 1},
        {"VERSION = 3", 3, false, 0},
        {"VERSION = 3\nIMPLICITAUTSTART = yes\nNAMINGSCHEME = HIERARCHICAL", 3, true, 1},
        {"NAMINGSCHEME = MULTIPROP\nIMPLICITAUTSTART = 0", 1, false, 0},
        {"VERSION = 3\nNAMINGSCHEME = HIERACHICAL", 3, false, 1},
        {"VERSION = 3\nNAMINGSCHEME = multiprop", 3, false, 0},
    };
    for (const auto &[conf, version, implicitStart, naming] : rows) {
        const TestSuite suite = load(conf);
        EXPECT_EQ(suite.version(), version) << conf;
        EXPECT_EQ(suite.implicitAutStart(), implicitStart) << conf;
        EXPECT_EQ(suite.namingScheme(), naming) << conf;
    }
}

TEST_F(TestSuiteTest, TextsAndLists)
{
    TestSuite suite = load("CWD = <AUT_path>\nCLASS = Main  Class\nUSE_WHITELIST =\n"
                           "OBJECTMAP = maps/objects.map\nWRAPPERS = SWT");
    EXPECT_EQ(suite.cwd(), "@app");
    EXPECT_EQ(suite.aut(), "Main Class");
    EXPECT_TRUE(suite.useWhiteList());
    EXPECT_EQ(suite.objectMap(), dir.filePath("maps/objects.map"));
    EXPECT_TRUE(suite.hookSubProcesses());
    suite.setAutOverride("over");
    EXPECT_EQ(suite.aut(), "over");

    const TestSuite two = load("WRAPPERS = Java AWT/Swing\nCWD = <CWD_of_Server>");
    EXPECT_EQ(two.wrappers(), (QStringList{"Java", "Java"}));
    EXPECT_FALSE(two.hookSubProcesses());
    EXPECT_EQ(two.cwd(), "@server");
    EXPECT_EQ(load("CWD = <aut_path>").cwd(), "<aut_path>");
    EXPECT_FALSE(load("WRAPPERS = Java Qt").hookSubProcesses());
}

TEST_F(TestSuiteTest, ASettingsGroupHidesPlainKeysButNotTheGlobalOnes)
{
    const QByteArray conf = "SETTINGS_GROUPS = nightly\nAUT = plain\nOBJECTMAP = o.map\n"
                            "NAMINGSCHEME = HIERARCHICAL\nnightly/VERSION = 3\n"
                            "WRAPPERS = SWT\nnightly/WRAPPERS = AWT/Swing\n";
    for (const char *group : {"nightly", "/nightly"}) {
        const TestSuite suite = load(conf, group);
        EXPECT_EQ(suite.aut(), "");
        EXPECT_EQ(suite.objectMap(), dir.filePath("o.map"));
        EXPECT_EQ(suite.version(), 3);
        EXPECT_EQ(suite.namingScheme(), 0);
        EXPECT_EQ(suite.wrappers(), QStringList("Java"));
    }
    // It passes the check and finds nothing.
    EXPECT_EQ(load(conf, "nightly/").version(), 1);
    EXPECT_EQ(load(conf, "Default").aut(), "plain");
}

TEST_F(TestSuiteDeathTest, AnUnknownSettingsGroupEndsTheProcess)
{
    EXPECT_EXIT(load("SETTINGS_GROUPS = nightly", "x/"), testing::ExitedWithCode(255),
                "Settings group 'x' doesn't exist in test suite '[^/]+'\n");
}

TEST_F(TestSuiteTest, ErrorsOfTheFilesAreKept)
{
    EXPECT_TRUE(load("KEY").hasConfigLoadError());
    writeFile(dir.filePath("config.xml"), "<x/>");
    const TestSuite suite = load("VERSION = 3");
    EXPECT_TRUE(suite.configLoadErrorMsg().startsWith("error while reading configuration file " +
                                                      dir.filePath("config.xml") + ": 1:1: "));
    EXPECT_EQ(suite.version(), 3);
}

TEST_F(TestSuiteTest, TestCasesAreFoundInTheOrderOfTheSuite)
{
    for (const char *name : {"tst_c", "tst_a", "tst_b", "other"})
        addTestCase(name);
    writeFile(dir.filePath("tst_file"), "");
    EXPECT_EQ(load("").discoverTestCases(), (QStringList{"tst_a", "tst_b", "tst_c"}));
    EXPECT_EQ(load("TEST_CASES = tst_b tst_x").discoverTestCases(),
              (QStringList{"tst_b", "tst_a", "tst_c"}));
    QDir given = load("").dir();
    given.setSorting(QDir::Name | QDir::Reversed);
    EXPECT_EQ(TestSuite(given, "").discoverTestCases(), (QStringList{"tst_c", "tst_b", "tst_a"}));
}

TEST_F(TestSuiteTest, WhyATestCaseWasNotEndedByItsChild)
{
    addTestCase("tst_a");
    TestSuite suite = load("");
    const QByteArray knowsSuite = "[ \"$MORVEX_SUITE_DIR\" = \"" +
                                  QDir(dir.path()).dirName().toLocal8Bit() + "\" ] && exit 5";
    const std::pair<QByteArray, const char *> rows[] = {
        {"exit 0",
         "ERROR|Nothing was tested|morvexrunner ended without reporting anything of tst_a"},
        {knowsSuite, "FATAL|Execution error|morvexrunner exited with code 5 when executing tst_a"},
    };
    for (const auto &[script, entry] : rows) {
        const FakeRunner runner(script);
        EXPECT_TRUE(run(suite).contains(entry));
    }
    const EnvironmentGuard prefix("MORVEX_PREFIX", "/no/such/prefix");
    EXPECT_TRUE(run(suite).contains("FATAL|Execution error|Failed to run morvexrunner"));
}

TEST_F(TestSuiteTest, EachAttemptIsInTheLogUnlessTheFirstFailureStopsTheRun)
{
    const FakeRunner runner("exit 1");
    addTestCase("tst_a");
    TestSuite suite = load("");
    EXPECT_EQ(run(suite, {}, 2).filter("START_TEST_CASE|"),
              (QStringList{"START_TEST_CASE|Start 'tst_a'|2", "START_TEST_CASE|Start 'tst_a'|1",
                           "START_TEST_CASE|Start 'tst_a'|0"}));
    EXPECT_FALSE(runner.arguments().contains("--retry"));
    addTestCase("tst_b");
    EXPECT_EQ(order(run(suite, {}, 3, true)), QStringList("tst_a"));
    EXPECT_TRUE(isComplete);
    EXPECT_TRUE(runner.arguments().contains("--retry"));
}

TEST_F(TestSuiteTest, ABehaviourDrivenTestCaseIsNotRepeated)
{
    const FakeRunner runner("exit 1");
    addTestCase("tst_a", {"x"});
    writeFile(dir.filePath("tst_a/test.feature"), "");
    TestSuite suite = load("");
    EXPECT_EQ(order(run(suite, {}, 3)).size(), 1);
    suite.setTags({"other"});
    QStringList lines;
    const std::string message = standardErrorOf([&] { lines = run(suite); });
    EXPECT_EQ(message, "Ignoring test case tags for BDD test tst_a\n");
    EXPECT_EQ(order(lines), QStringList("tst_a"));
    EXPECT_TRUE(runner.arguments().contains("--tags=other"));
}

TEST_F(TestSuiteTest, ARandomRunReportsItsNumber)
{
    const FakeRunner runner("exit 1");
    addTestCase("tst_a");
    TestSuite suite = load("");
    EXPECT_EQ(run(suite, {}, 0, false, 1)[1],
              "LOG|Random order of test cases|Random sequence number 1 used");
    EXPECT_TRUE(run(suite).filter("Random").isEmpty());
}

TEST_F(TestSuiteTest, SkippedTestCasesAreLoggedWithoutAProcess)
{
    const EnvironmentGuard prefix("MORVEX_PREFIX", "/no/such/prefix");
    addTestCase("tst_a");
    TestSuite suite = load("");
    suite.setSkippedTestCases({"tst_a"});
    const QStringList lines = run(suite);
    EXPECT_EQ(lines.mid(1, 3),
              (QStringList{"START_TEST_CASE|Start 'tst_a'|-1",
                           "SKIP_SECTION|tst_a|Skipping Test Case requested through commandline "
                           "option while executing the Test Suite.",
                           "END_TEST_CASE|End 'tst_a'|End of test 'tst_a'"}));
}

TEST_F(TestSuiteTest, TagsChooseAndReservedOnesWarn)
{
    const FakeRunner runner("exit 1");
    addTestCase("tst_a", {"fast"});
    addTestCase("tst_b", {"slow", "untagged"});
    addTestCase("tst_c");
    TestSuite suite = load("");
    EXPECT_EQ(order(run(suite)).size(), 3);
    suite.setTags({"~fast"});
    const QStringList lines = run(suite);
    EXPECT_EQ(order(lines), (QStringList{"tst_b", "tst_c"}));
    EXPECT_EQ(lines.filter("WARNING"),
              QStringList("WARNING|tst_b: Invalid tag value|\"untagged\" should not be used as "
                          "tag, reserved tag by Morvex"));
    QString error;
    EXPECT_EQ(suite.selectedByTags(suite.discoverTestCases(), &error),
              (QStringList{"tst_b", "tst_c"}));
}

TEST_F(TestSuiteTest, TagsThatCannotBeReadLeaveTheLogOpen)
{
    const FakeRunner runner("exit 1");
    addTestCase("tst_a", {"t"});
    addTestCase("tst_b");
    addTestCase("tst_c", {"t"});
    writeFile(dir.filePath("tst_b/config.xml"), "<x/>");
    TestSuite suite = load("");
    suite.setTags({"t"});
    QStringList lines;
    const std::string message = standardErrorOf([&] { lines = run(suite); });
    EXPECT_EQ(message.find("Error in test case config.xml: 1:1: "), 0U) << message;
    EXPECT_EQ(order(lines), QStringList("tst_a"));
    EXPECT_FALSE(isComplete);
    suite.setTags({"~untagged"});
    EXPECT_NE(standardErrorOf([&] { lines = run(suite); }), "");
    EXPECT_TRUE(lines.isEmpty());
}

TEST_F(TestSuiteTest, ACancellationBetweenTestCasesIsOneOfTheNext)
{
    Cancellation cancellation;
    cancellation.request();
    const EnvironmentGuard prefix("MORVEX_PREFIX", "/no/such/prefix");
    addTestCase("tst_a", {"t"});
    addTestCase("tst_b");
    addTestCase("tst_c");
    TestSuite suite = load("");
    suite.setCancellation(&cancellation);
    suite.setTags({"~t"});
    EXPECT_EQ(run(suite, {}, 2).mid(1, 3),
              (QStringList{"START_TEST_CASE|Start 'tst_b'|2",
                           "FATAL|Execution error|Testsuite execution was canceled while executing "
                           "tst_b",
                           "END_TEST_CASE||"}));
    // Nothing is cut off when nothing is left to run.
    suite.setTags({"t,~t"});
    suite.setSkippedTestCases({"tst_a"});
    EXPECT_TRUE(run(suite, {"tst_a"}).filter("FATAL").isEmpty());
}

TEST_F(TestSuiteTest, TheCommandLineOfAnAttempt)
{
    addTestCase("tst_a");
    writeFile(dir.filePath("env"), "");
    const FakeRunner runner("exit 1");
    TestResult result(new RecordingGenerator);
    result.start("s", "", "");
    const auto arguments = [&runner, this] {
        QStringList all = runner.arguments();
        all.removeAt(all.indexOf("--reportgen") + 1);
        return all.join('|').replace(dir.path(), "DIR");
    };
    TestSuite full = load("SETTINGS_GROUPS = g\ng/VERSION = 1\ng/WRAPPERS = Qt SWT\n"
                          "g/ENVVARS = env\ng/CLASSPATH = /c\ng/CWD = /w\n"
                          "g/HOOK_SUB_PROCESSES = 1\ng/USE_WHITELIST = 1\ng/LAUNCHER = run\n"
                          "g/LAUNCHER_ARGUMENTS = -a plain \"b c\"\n"
                          "g/AUT = app \"a path\" -x\n",
                          "g");
    full.videoCaptureEnabled = true;
    full.setTags({"~x"});
    full.setScriptArguments({"s 1", "--s2"});
    EXPECT_TRUE(full.runTestCase("tst_a", "host", 99, &result, "/r", 1.5, 7, 2, 3, {"A=1"}, true));
    EXPECT_EQ(arguments(),
              "--host|host|--port|99|--settingsGroup|g|--testcase|tst_a|--reportgen|--wrapper|Qt|"
              "--wrapper|Java|--envvars|DIR/env|--envvar|CLASSPATH=/c|--envvar|A=1|"
              "--objectmap|DIR/objects.map|--cwd|/w|--hook-subprocesses|--use-whitelist|"
              "--interactive|--snoozeFactor|1.5|--enable-video-capture|--resultdir|/r|"
              "--applauncher|run|--suiteVersion|1|--launcherargs|\"-a\" plain \"b c\"|--tags=~x|"
              "--retry|3|--aut|app|a\\ path|-x|--scriptargs|s 1|--s2");
    TestSuite plain = load("VERSION = 2\nENVVARS = missing\nAUT = app");
    plain.runTestCase("tst_a", "h", 1, &result, "", 0, 7, 0, 0, {}, false);
    EXPECT_EQ(arguments(), "--host|h|--port|1|--testcase|tst_a|--reportgen|"
                           "--objectmap|DIR/objects.map|--suiteVersion|2");
}

TEST_F(TestSuiteTest, TheCommandLineOfARecording)
{
    const FakeRunner runner("exit 0");
    TestSuite suite = load("VERSION = 2\nLANGUAGE = Ruby\nAUT = \"my app\" -x\nCLASSPATH = /c");
    suite.record(true, true, true, "tst_new", {"a.tsv", "b.tsv"}, "h", 1, {"A=1"});
    for (int i = 0; i < 3000 && runner.arguments().isEmpty(); ++i)
        QThread::msleep(20);
    EXPECT_EQ(runner.arguments().join('|').replace(dir.path(), "DIR"),
              "--host|h|--port|1|--testcase|tst_new|--record|--testdata|a.tsv|--testdata|b.tsv|"
              "--disableEventCompression|--useWaitFor|--naming|0|--envvar|CLASSPATH=/c|"
              "--envvar|A=1|--objectmap|DIR/objects.map|--useScriptedObjectMap|--lang|rb|"
              "--explicitAutStart|--suiteVersion|2|--aut|my\\ app|-x");
}
