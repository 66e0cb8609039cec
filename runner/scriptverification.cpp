#include "runner/scriptverification.h"

#include "runner/failurepause.h"
#include "runner/pointdraft.h"
#include "runner/pointmaker.h"
#include "runner/scriptapplication.h"
#include "runner/scriptdata.h"
#include "runner/scriptengine.h"
#include "shared/environment.h"
#include "shared/system/clock.h"
#include "test/objectnameresolverinterface.h"
#include "test/tablevp.h"
#include "test/testvp.h"

#include <QDir>
#include <QFileInfo>
#include <QJSEngine>

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

bool isLearning()
{
    return Environment::getVariable("MORVEX_LEARN_SCREENSHOTS") == "1";
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
    const int failuresBefore = m_result->failureCount();
    const bool wasEndMet = m_application->isEndMet();
    const bool hasPassed = compare(name, options, table, row);
    if (!wasEndMet && m_application->isEndMet())
        qjsEngine(this)->throwError(m_application->end());
    if (m_result->failureCount() > failuresBefore)
        pauseAfter(TestResult::FAIL);
    return hasPassed;
}

bool ScriptVerification::compare(const QString &name, const QVariantMap &options, QObject *table,
                                 int row)
{
    const std::vector<LineInfo> stack = m_engine->currentStack();
    const QString path = pointPath(name);
    const bool isSilent = options.value(QStringLiteral("silent")).toBool();
    const bool learns = isLearning();
    if (!QFileInfo::exists(path)) {
        const Making outcome = make(name, path, options);
        if (outcome != MadeByAnotherRun)
            return outcome == Made;
    }
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
    if (learns && !isSilent && outcome.summary() == VPResult::SummaryFailed && isVisualPoint(path))
        addWarning(QStringLiteral("Verification point '%1' was not changed").arg(name),
                   QStringLiteral("Visual verification points are not updated. Delete '%1' to have "
                                  "it made again.")
                       .arg(path));
    return outcome.summary() == VPResult::SummaryPassed;
}

ScriptVerification::Making ScriptVerification::make(const QString &name, const QString &path,
                                                    const QVariantMap &options)
{
    const PointRequest request{options.value(QStringLiteral("object")).toString(),
                               options.value(QStringLiteral("type")).toString(),
                               options.value(QStringLiteral("properties")).toStringList()};
    if (!isLearning() || request.type.isEmpty()) {
        m_result->addError(
            QStringLiteral("Verification point file '%1' cannot be opened.").arg(name),
            howToMakePoint(name, path), m_engine->currentStack());
        return NotMade;
    }
    QString error;
    if (const SharedPtr<Object> object = m_application->object(request.objectName, 0, &error))
        return makeOf(object, name, path, request);
    addNotMade(name, error);
    return NotMade;
}

ScriptVerification::Making ScriptVerification::makeOf(const SharedPtr<Object> &object,
                                                      const QString &name, const QString &path,
                                                      const PointRequest &request)
{
    PointDraft draft(path);
    QString error = draft.error();
    if (error.isEmpty())
        error = makePointFile(draft.path(), request, object);
    if (!error.isEmpty()) {
        addNotMade(name, error.replace(draft.path(), path));
        return NotMade;
    }
    if (!fillIn(name, draft.path()))
        return NotMade;
    switch (draft.takePlace(&error)) {
    case PointDraft::Placed:
        addWarning(QStringLiteral("Verification point '%1' was made from object '%2'")
                       .arg(name, request.objectName),
                   QStringLiteral("Its file is '%1'.").arg(path));
        return Made;
    case PointDraft::Taken:
        return MadeByAnotherRun;
    case PointDraft::Failed:
        break;
    }
    addNotMade(name, error);
    return NotMade;
}

void ScriptVerification::addNotMade(const QString &name, const QString &reason)
{
    m_result->addError(QStringLiteral("Verification point '%1' could not be made").arg(name),
                       reason, m_engine->currentStack());
}

// The content of screenshots and tables is that of a check that learns.
bool ScriptVerification::fillIn(const QString &name, const QString &path)
{
    LiveResolver resolver(m_application);
    VerificationOptions options;
    options.setFlag(VerificationOptions::SilentVerification);
    options.setScreenshotDelay(0);
    const int failuresBefore = m_result->failureCount();
    const VPResult outcome = TestVP(name, path)
                                 .verify(m_result, m_engine->currentStack(), &m_runner, QString(),
                                         &resolver, options, nullptr, false);
    if (outcome.summary() == VPResult::SummaryPassed)
        return true;
    if (m_result->failureCount() == failuresBefore)
        addNotMade(name, QStringLiteral("What it would hold does not stay the same."));
    return false;
}

void ScriptVerification::addWarning(const QString &message, const QString &details)
{
    m_result->addResult(currentLocalTime(), TestResult::WARNING, message, details,
                        m_engine->currentStack());
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
        addWarning(QStringLiteral("Verification point '%1' checks nothing").arg(name),
                   QStringLiteral("The file has no element 'Verification'."));
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
