#include "test/stdoutreportgenerator.h"

#include "support/runs.h"
#include "support/test.h"
#include "test/testresult.h"

#include <pty.h>
#include <unistd.h>

using namespace Morvex;
using namespace MorvexTest;

namespace {

class ConsoleTest : public testing::Test
{
protected:
    QByteArray lineOf(const TestResult::Entry &entry)
    {
        QFile::remove(path);
        makeReport("stdout," + path)->handleEntry(entry);
        return readFile(path);
    }

    TestResult::Entry logEntry() const
    {
        TestResult::Entry entry;
        entry.time = QDateTime(QDate(2024, 3, 1), QTime(12, 0, 5, 600));
        entry.type = TestResult::LOG;
        entry.message = "message";
        entry.details = "details";
        return entry;
    }

    QTemporaryDir dir;
    const QString path = dir.filePath("console.log");
    const EnvironmentGuard force{"CLICOLOR_FORCE", QByteArray()};
    const EnvironmentGuard color{"CLICOLOR", QByteArray()};
};

} // namespace

TEST_F(ConsoleTest, TheLineOfAnEntry)
{
    TestResult::Entry entry = logEntry();
    EXPECT_EQ(lineOf(entry), "2024-03-01T12:00:05\tLOG       \tmessage                       "
                             "\tdetails\n");
    entry.line = LineInfo("f.js", 7);
    entry.info = "info";
    entry.vpName = "VP";
    EXPECT_EQ(lineOf(entry), "2024-03-01T12:00:05\tLOG       \tf.js:7: message               "
                             "\tdetails (info) (VP)\n");
    entry.line = LineInfo("f.js", -1);
    entry.type = TestResult::STARTVIDEOCAPTURE;
    EXPECT_EQ(lineOf(entry), "2024-03-01T12:00:05\tSTARTVIDEOCAPTURE\tmessage                  "
                             "     \tdetails (info) (VP)\n");
}

TEST_F(ConsoleTest, AnEntryStaysOnOneLine)
{
    TestResult::Entry entry = logEntry();
    entry.message = "a\nb\tc\\d\be";
    entry.details = QString::fromUtf8("C:\\temp\n\nü");
    EXPECT_EQ(lineOf(entry), "2024-03-01T12:00:05\tLOG       \ta\\nb\\tc\\\\d\\be                 "
                             "\tC:\\\\temp\\n\\nü\n");
}

TEST_F(ConsoleTest, ColoursWhenForced)
{
    const EnvironmentGuard forced("CLICOLOR_FORCE", "1");
    const std::map<TestResult::ResultType, const char *> codes{
        {TestResult::FATAL, "31"},   {TestResult::ERROR, "31"}, {TestResult::FAIL, "31"},
        {TestResult::XPASS, "31"},   {TestResult::PASS, "32"},  {TestResult::XFAIL, "32"},
        {TestResult::WARNING, "35"},
    };
    for (const TestResult::ResultType type : allTypes()) {
        if (type == TestResult::END_SECTION)
            continue;
        TestResult::Entry entry = logEntry();
        entry.type = type;
        const QByteArray code = codes.count(type) ? codes.at(type) : "34";
        const QByteArray name = TestResult::resultToString(type).leftJustified(10).toLatin1();
        EXPECT_EQ(lineOf(entry).mid(20, 5 + name.size() + 5),
                  "\x1b[" + code + "m" + name + "\t\x1b[0m");
    }
}

TEST_F(ConsoleTest, WhoDecidesAboutColours)
{
    int terminal = -1;
    int other = -1;
    ASSERT_EQ(openpty(&terminal, &other, nullptr, nullptr, nullptr), 0);
    std::FILE *tty = fdopen(other, "w");
    std::FILE *file = std::tmpfile();
    const std::tuple<const char *, const char *, bool, bool> rows[] = {
        {nullptr, nullptr, true, false}, {nullptr, "0", false, false}, {nullptr, "1", true, false},
        {"1", "0", true, true},          {"0", nullptr, true, false},  {"0", "0", false, false},
        {"", "0", false, false},
    };
    for (const auto &[toForce, toChoose, onTerminal, inFile] : rows) {
        const EnvironmentGuard forced("CLICOLOR_FORCE", toForce);
        const EnvironmentGuard chosen("CLICOLOR", toChoose);
        EXPECT_EQ(canUseConsoleColor(tty), onTerminal);
        EXPECT_EQ(canUseConsoleColor(file), inFile);
    }
    std::fclose(tty);
    std::fclose(file);
    ::close(terminal);
}

TEST_F(ConsoleTest, TheSummaryHasAllCounters)
{
    const auto generator = makeReport("stdout," + path);
    for (const TestResult::ResultType type : allTypes())
        generator->handleEntry(fullEntry(type));
    generator->generateSummary();
    const QByteArray log = readFile(path);
    EXPECT_EQ(log.mid(log.indexOf("***")),
              "*******************************************************\n"
              "Summary:\n"
              "Number of Test Cases:\t   1\n"
              "Number of Tests:\t   4\n"
              "Number of Errors:\t   1\n"
              "Number of Fatals:\t   1\n"
              "Number of Fails:\t   2\n"
              "Number of Passes:\t   2\n"
              "Number of Expected Fails:\t   1\n"
              "Number of Unexpected Passes:\t   1\n"
              "Number of Warnings:\t   1\n"
              "*******************************************************\n");
}
