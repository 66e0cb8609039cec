#include "support/samplerun.h"

#include "support/sampleentries.h"

namespace MorvexTest {

using Morvex::LineInfo;
using Morvex::TestReportGenerator;
using Morvex::TestResult;

namespace {

QString messageOf(TestResult::VPType vpType)
{
    if (vpType == TestResult::PROPERTY_VP)
        return "VP: Property comparison of ':Main.ok.enabled' failed";
    return vpType == TestResult::NO_VP ? "Values differ" : "VP: Comparison of ':Main.ok' failed";
}

QString detailsOf(TestResult::VPType vpType)
{
    switch (vpType) {
    case TestResult::PROPERTY_VP:
        return "The values 'true' and 'false' differ";
    case TestResult::SCREENSHOT_VP:
    case TestResult::VISUAL_VP:
        return "Saved as '/r/tst_a/failed_1.png'.";
    default:
        return "Expected 'a', got 'b'.";
    }
}

TestResult::Entry testCaseStart(int retry)
{
    TestResult::Entry entry = plainEntry(TestResult::START_TEST_CASE, "Start 'tst_a'");
    entry.info = "tst_a";
    entry.retry = retry;
    entry.summary = "summary of a";
    entry.description = "description of a";
    return entry;
}

TestResult::Entry testCaseEnd()
{
    TestResult::Entry entry = plainEntry(TestResult::END_TEST_CASE, "End 'tst_a'");
    entry.info = "tst_a";
    return entry;
}

TestResult::Entry section(TestResult::ResultType type)
{
    TestResult::Entry entry = plainEntry(type, "title");
    entry.info = "section";
    entry.details = "about it";
    return entry;
}

TestResult::Entry attachment(TestResult::ResultType type)
{
    TestResult::Entry entry = plainEntry(type, "attached");
    entry.attachmentType = TestResult::FILE_ATTACHMENT;
    entry.attachmentUri = "/r/a b.txt";
    return entry;
}

} // namespace

TestResult::Entry plainEntry(TestResult::ResultType type, const QString &message)
{
    TestResult::Entry entry;
    entry.time = QDateTime(QDate(2024, 2, 29), QTime(23, 59, 58, 7), Qt::OffsetFromUTC, 3600);
    entry.type = type;
    entry.message = message;
    entry.vpCounter = 0;
    entry.name = "suite_a";
    return entry;
}

TestResult::Entry verificationEntry(TestResult::ResultType type, TestResult::VPType vpType,
                                    int vpCounter)
{
    TestResult::Entry entry = plainEntry(type, messageOf(vpType));
    entry.details = detailsOf(vpType);
    entry.stack = {LineInfo("/s/tst_a/script.js", 12), LineInfo("/s/shared.js", 3)};
    entry.line = entry.stack.front();
    entry.vpCounter = vpCounter;
    entry.vpType = vpType;
    if (vpType != TestResult::NO_VP)
        entry.vpFile = QFileInfo("/s/points/VP1.xml");
    if (vpType == TestResult::TABLE_VP)
        entry.tableDiff = fullEntry(type).tableDiff;
    return entry;
}

std::vector<TestResult::Entry> sampleRun()
{
    std::vector<TestResult::Entry> entries{plainEntry(TestResult::START, "Start 'suite_a'"),
                                           testCaseStart(1)};
    int vpCounter = 0;
    for (const auto type :
         {TestResult::PASS, TestResult::FAIL, TestResult::XFAIL, TestResult::XPASS}) {
        for (const auto vpType : {TestResult::NO_VP, TestResult::PROPERTY_VP, TestResult::TABLE_VP,
                                  TestResult::SCREENSHOT_VP, TestResult::VISUAL_VP})
            entries.push_back(verificationEntry(type, vpType, ++vpCounter));
    }
    entries.push_back(testCaseEnd());
    entries.push_back(testCaseStart(0));
    entries.push_back(section(TestResult::START_SECTION));
    for (const auto type :
         {TestResult::LOG, TestResult::FATAL, TestResult::ERROR, TestResult::WARNING})
        entries.push_back(plainEntry(type, "told"));
    entries.push_back(section(TestResult::END_SECTION));
    entries.push_back(section(TestResult::SKIP_SECTION));
    for (const auto type :
         {TestResult::ATTACHMENT, TestResult::STARTVIDEOCAPTURE, TestResult::ENDVIDEOCAPTURE})
        entries.push_back(attachment(type));
    entries.push_back(testCaseEnd());
    entries.push_back(plainEntry(TestResult::END, "End 'suite_a'"));
    return entries;
}

std::vector<TestResult::Entry> runOfMessages(const QStringList &messages)
{
    std::vector<TestResult::Entry> entries{plainEntry(TestResult::START)};
    for (const QString &message : messages)
        entries.push_back(plainEntry(TestResult::LOG, message));
    entries.push_back(plainEntry(TestResult::END));
    return entries;
}

void replay(const std::vector<TestResult::Entry> &entries, TestReportGenerator *generator)
{
    for (const TestResult::Entry &entry : entries)
        generator->handleEntry(entry);
}

QStringList awkwardTexts()
{
    QStringList texts{QString(1 << 20, QLatin1Char('x')),
                      QString::fromUtf8("\U0001F600\U00010FFFF äöü \u2028 <&>\"'"),
                      QString(QChar(0xd83d)),
                      "a" + QString(QChar(0xde00)) + "b",
                      QString(QChar(0xfffe)) + QChar(0xffff) + "c",
                      "C:\\path\\new \"quoted\"\r\n\ttabbed"};
    for (ushort control = 0; control < 0x20; ++control)
        texts += "<" + QString(QChar(control)) + ">";
    for (int brackets = 0; brackets < 6; ++brackets) {
        const QString run(brackets, QLatin1Char(']'));
        texts += "a" + run;
        texts += run + ">" + run + ">b";
        texts += run + QChar(7) + "]>" + run;
    }
    return texts;
}

QString withoutUnwritable(const QString &text, bool dropsControls)
{
    QString expected;
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text[i];
        const bool isPair =
            unit.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate();
        if (isPair)
            expected += text.mid(i++, 2);
        else if (unit.isSurrogate() || unit.unicode() >= 0xfffe)
            expected += QChar(QChar::ReplacementCharacter);
        else if (!dropsControls || unit.unicode() >= 0x20 || unit == '\t' || unit == '\n' ||
                 unit == '\r')
            expected += unit;
    }
    return expected;
}

} // namespace MorvexTest
