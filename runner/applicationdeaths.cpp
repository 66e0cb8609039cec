#include "runner/applicationdeaths.h"

#include "runner/scriptengine.h"
#include "shared/system/clock.h"
#include "test/runnerinterface.h"
#include "test/testvp.h"
#include "test/verification/displaypicture.h"

#include <QFile>
#include <QImage>

namespace Morvex {
namespace {

QString capitalised(QString text)
{
    text[0] = text[0].toUpper();
    return text;
}

QString coreText(const Applications::Death &death)
{
    if (!death.hasDumpedCore)
        return {};
    QFile pattern(QStringLiteral("/proc/sys/kernel/core_pattern"));
    return QStringLiteral("\nA core was dumped: kernel.core_pattern is '%1'.")
        .arg(pattern.open(QIODevice::ReadOnly) ? QString::fromLocal8Bit(pattern.readAll()).trimmed()
                                               : QString());
}

} // namespace

ApplicationDeaths::ApplicationDeaths(Applications *applications, TestResult *result,
                                     RunnerInterface *runner, const ScriptEngine *engine)
    : m_applications(applications)
    , m_result(result)
    , m_runner(runner)
    , m_engine(engine)
{
    applications->setHangs([this](const QString &stack) { reportHanging(stack); });
    applications->setCrashesAtEnd(
        [this](const QString &text) { reportCrashAtEnd(text, m_engine->currentStack()); });
}

ApplicationDeaths::~ApplicationDeaths()
{
    m_applications->setHangs(nullptr);
    m_applications->setCrashesAtEnd(nullptr);
}

// The application is not asked: it could not answer.
QString ApplicationDeaths::picture(TestResult::ResultType type)
{
    if (m_runner->resultDirectory().isEmpty())
        return {};
    if (!hasDisplay())
        return QStringLiteral("\nThere is no display to take a picture of.");
    QString error;
    const QImage image = pictureOfDisplay(&error);
    return image.isNull()
               ? QStringLiteral("\nThere is no picture of the display: ") + error
               : QLatin1Char('\n') + TestVP::logScreenshot(m_runner, type, image).trimmed();
}

void ApplicationDeaths::reportCrashAtEnd(const QString &text, const std::vector<LineInfo> &stack)
{
    m_result->addResult(
        currentLocalTime(), TestResult::FATAL, capitalised(text),
        QStringLiteral("This was when it was asked to end.") + picture(TestResult::FATAL), stack);
}

void ApplicationDeaths::reportHanging(const QString &stack)
{
    const QString where =
        stack.isEmpty()
            ? QStringLiteral("Its stack is not known: that needs gdb and a few seconds.")
            : stack;
    m_result->addResult(currentLocalTime(), TestResult::LOG,
                        QStringLiteral("The application does not answer"),
                        where + picture(TestResult::LOG), m_engine->currentStack());
}

void ApplicationDeaths::addCaught(const Applications::Death &death)
{
    m_applications->settleDeath(death.context);
    m_result->addResult(currentLocalTime(), TestResult::WARNING, capitalised(death.text),
                        QStringLiteral("The script has caught this and goes on.") +
                            coreText(death) + picture(TestResult::WARNING),
                        m_engine->currentStack());
}

void ApplicationDeaths::addUnmet(const Applications::Death &death,
                                 const std::vector<LineInfo> &stack)
{
    m_applications->settleDeath(death.context);
    m_result->addResult(currentLocalTime(), TestResult::FATAL, capitalised(death.text),
                        QStringLiteral("No call of the script ran into this.") + coreText(death) +
                            picture(TestResult::FATAL),
                        stack);
}

void ApplicationDeaths::reportCaught()
{
    for (const Applications::Death &death : m_applications->deaths()) {
        if (death.isMet)
            addCaught(death);
    }
}

void ApplicationDeaths::reportBeforeStop(int context)
{
    const RemoteApplication *stopped = m_applications->applicationOf(context);
    for (const Applications::Death &death : m_applications->deaths()) {
        if (m_applications->applicationOf(death.context) != stopped)
            continue;
        if (death.isMet)
            addCaught(death);
        else
            addUnmet(death, m_engine->currentStack());
    }
}

bool ApplicationDeaths::reportThrown(const QString &thrown, const QString &details,
                                     const std::vector<LineInfo> &stack)
{
    for (const Applications::Death &death : m_applications->deaths()) {
        if (!death.isMet || !thrown.contains(death.text))
            continue;
        m_applications->settleDeath(death.context);
        m_result->addResult(currentLocalTime(), TestResult::FATAL, capitalised(death.text),
                            details + coreText(death) + picture(TestResult::FATAL), stack);
        return true;
    }
    return false;
}

void ApplicationDeaths::reportRest(const QString &path)
{
    reportCaught();
    for (const Applications::Death &death : m_applications->deaths())
        addUnmet(death, {LineInfo(path, 0)});
}

void ApplicationDeaths::stopAll(const QString &path)
{
    m_applications->setCrashesAtEnd(
        [this, path](const QString &text) { reportCrashAtEnd(text, {LineInfo(path, 0)}); });
    m_applications->stopAll();
}

} // namespace Morvex
