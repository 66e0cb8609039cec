#include "runner/failurescreenshots.h"

#include "test/reportgeneratorshared.h"
#include "test/testvp.h"

#include <QElapsedTimer>
#include <QImage>

namespace Morvex {
namespace {

const char variable[] = "MORVEX_FAILURE_SCREENSHOTS";
const int defaultCount = 10;
const int longestMs = 1000;

VerificationOptions flags()
{
    VerificationOptions options;
    options.setFlag(VerificationOptions::ScreenshotOnFail);
    options.setFlag(VerificationOptions::ScreenshotOnError);
    return options;
}

} // namespace

FailureScreenshots::FailureScreenshots(const ScriptRunner &runner,
                                       const std::function<bool()> &isWanted)
    : m_runner(runner)
    , m_isWanted(isWanted)
{
    bool isSet = false;
    const int count = qEnvironmentVariableIntValue(variable, &isSet);
    m_rest = m_runner.resultDirectory().isEmpty() ? 0 : isSet ? count : defaultCount;
}

QString FailureScreenshots::textFor(TestResult::ResultType type)
{
    if (m_rest <= 0 || !TestVP::wantLogScreenshotForResult(flags(), type) || !m_isWanted())
        return {};
    --m_rest;
    QElapsedTimer timer;
    timer.start();
    const QString text = TestVP::logScreenshot(&m_runner, type, QImage());
    // An application that hangs would keep each further failure waiting as long.
    if (timer.elapsed() > longestMs && extractScreenshotFromMsg(text).isEmpty())
        m_rest = 0;
    return text;
}

QString setFailureScreenshots(const QString &setting)
{
    bool isNumber = true;
    const uint count = setting.isEmpty() ? defaultCount : setting.toUInt(&isNumber);
    qputenv(variable, QByteArray::number(qMin(count, 100000U)));
    return isNumber ? QString()
                    : QStringLiteral("FAILURE_SCREENSHOTS in suite.conf must be a number, 0 or "
                                     "greater, not '%1'")
                          .arg(setting);
}

} // namespace Morvex
