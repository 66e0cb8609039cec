#include "support/verification.h"

#include "support/files.h"

using namespace Morvex;

namespace MorvexTest {

VerificationTest::VerificationTest()
    : runner(&log)
    , m_learn("MORVEX_LEARN_SCREENSHOTS", QByteArray())
    , m_generator(new RecordingGenerator)
{
    Inspector::install(&inspector);
    log.setReportGenerator(m_generator);
    log.start("suite", QString(), QString());
    options.setScreenshotDelay(0);
    runner.script = path("suite/tst_a/script.js");
    m_taken = m_generator->entries.size();
}

VerificationTest::~VerificationTest()
{
    Inspector::install(nullptr);
}

VPResult VerificationTest::verify(const QByteArray &rootAttributes, const QByteArray &body)
{
    return verifyFile("<VerificationPoint " + rootAttributes + ">" + body + "</VerificationPoint>");
}

VPResult VerificationTest::verifyFile(const QByteArray &file)
{
    writeFile(path("suite/tst_a/points/vp.xml"), file);
    return TestVP("vp", path("suite/tst_a/points/vp.xml"))
        .verify(&log, stack, &runner, "info", &resolver, options, record, expectFail);
}

QByteArray VerificationTest::pointFile() const
{
    return readFile(path("suite/tst_a/points/vp.xml"));
}

QStringList VerificationTest::takeResults()
{
    QStringList results;
    for (; m_taken < m_generator->entries.size(); ++m_taken) {
        const TestResult::Entry &entry = m_generator->entries[m_taken];
        results +=
            TestResult::resultToString(entry.type) + " " + entry.message + "|" + entry.details;
    }
    return results;
}

} // namespace MorvexTest
