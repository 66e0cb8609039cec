#include "runner/scriptverification.h"

#include "runner/scriptapplication.h"
#include "runner/scriptdata.h"
#include "runner/scriptengine.h"
#include "shared/clock.h"
#include "shared/environment.h"
#include "test/objectnameresolverinterface.h"
#include "test/tablevp.h"
#include "test/testvp.h"

#include <QDir>
#include <QFileInfo>

namespace Morvex {
namespace {

class LiveResolver : public ObjectNameResolverInterface
{
public:
    explicit LiveResolver(const ScriptApplication *application)
        : m_application(application)
    {
    }

    SharedPtr<Object> resolve(const QString &objectName, QString *error) override
    {
        return m_application->object(objectName, 0, error);
    }

    bool allowsSeveralObjects() const override { return false; }

private:
    const ScriptApplication *m_application;
};

VerificationOptions optionsOf(const QVariantMap &values)
{
    const struct
    {
        VerificationOptions::Flag flag;
        QLatin1String name;
    } flags[] = {
        {VerificationOptions::SilentVerification, QLatin1String("silent")},
        {VerificationOptions::StopOnFail, QLatin1String("stopOnFail")},
        {VerificationOptions::ScreenshotOnPass, QLatin1String("screenshotOnPass")},
        {VerificationOptions::ScreenshotOnFail, QLatin1String("screenshotOnFail")},
        {VerificationOptions::ScreenshotOnWarning, QLatin1String("screenshotOnWarning")},
        {VerificationOptions::ScreenshotOnError, QLatin1String("screenshotOnError")},
    };
    VerificationOptions options;
    for (const auto &row : flags)
        options.setFlag(row.flag, values.value(row.name).toBool());
    options.setRetryDuration(values.value(QStringLiteral("retry")).toInt());
    // A widget can be asked for its picture at any time, so that nothing has to be waited for.
    options.setScreenshotDelay(values.value(QStringLiteral("delay")).toInt());
    return options;
}

} // namespace

ScriptVerification::ScriptVerification(ScriptEngine *engine, const ScriptApplication *application,
                                       TestResult *result, const ScriptRunner &runner,
                                       const QStringList &searchDirs)
    : m_engine(engine)
    , m_application(application)
    , m_result(result)
    , m_runner(runner)
    , m_searchDirs(searchDirs)
{
}

bool ScriptVerification::verify(const QString &name, const QVariantMap &options, QObject *table,
                                int row)
{
    const std::vector<LineInfo> stack = m_engine->currentStack();
    const QString path = pointPath(name);
    const bool isSilent = options.value(QStringLiteral("silent")).toBool();
    const bool learns = Environment::getVariable("MORVEX_LEARN_SCREENSHOTS") == "1";
    if (!isSilent && !learns && hasUnreadableTable(path)) {
        m_result->addError(QStringLiteral("Verification point '%1' failed").arg(name),
                           QStringLiteral("The table in '%1' can't be read.").arg(path), stack);
        return false;
    }
    const auto *data = qobject_cast<const ScriptData *>(table);
    LiveResolver resolver(m_application);
    const int failuresBefore = m_result->failureCount();
    const VPResult outcome = TestVP(name, path)
                                 .verify(m_result, stack, &m_runner, QString(), &resolver,
                                         optionsOf(options), data ? data->record(row) : nullptr,
                                         options.value(QStringLiteral("expectFail")).toBool());
    if (outcome.summary() == VPResult::SummaryError)
        m_result->addError(outcome.message(), outcome.details(), stack);
    else if (!isSilent)
        addMissingResult(name, outcome, m_result->failureCount() > failuresBefore);
    return outcome.summary() == VPResult::SummaryPassed;
}

// A report must not look better than the outcome that the script gets.
void ScriptVerification::addMissingResult(const QString &name, const VPResult &outcome,
                                          bool hasLoggedFailure)
{
    const std::vector<LineInfo> stack = m_engine->currentStack();
    if (outcome.summary() == VPResult::SummaryFailed && !hasLoggedFailure)
        m_result->addError(QStringLiteral("Verification point '%1' failed").arg(name),
                           QStringLiteral("It was expected to fail, but its file has been updated "
                                          "(--learn)."),
                           stack);
    else if (outcome.summary() == VPResult::SummaryPassed && outcome.message().isEmpty())
        m_result->addResult(currentLocalTime(), TestResult::WARNING,
                            QStringLiteral("Verification point '%1' checks nothing").arg(name),
                            QStringLiteral("The file has no element 'Verification'."), stack,
                            QString(), -1);
}

QString ScriptVerification::pointPath(const QString &name) const
{
    const QString relative = QLatin1String("points/") + name + QLatin1String(".xml");
    for (const QString &dir : m_searchDirs) {
        const QString path = QDir(dir).absoluteFilePath(relative);
        if (QFileInfo::exists(path))
            return path;
    }
    return QDir(m_searchDirs.value(0)).absoluteFilePath(relative);
}

} // namespace Morvex
