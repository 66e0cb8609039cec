#include "runner/scriptapi.h"

#include "objectmodel/value/decodedtext.h"

#include "runner/applicationsondemand.h"
#include "runner/attachmentpath.h"
#include "runner/failurepause.h"
#include "runner/namesfile.h"
#include "runner/processend.h"
#include "runner/scriptdata.h"
#include "runner/scriptfile.h"
#include "shared/environment.h"
#include "shared/files/writefile.h"
#include "shared/points/pointtypes.h"
#include "shared/system/clock.h"
#include "test/testresult.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QQmlEngine>

#include <cstdlib>
#include <limits>

namespace Morvex {

ScriptApi::ScriptApi(ScriptEngine *engine, ApplicationsOnDemand *applications,
                     const Context &context)
    : m_engine(engine)
    , m_applications(applications)
    , m_context(context)
{
    m_clock.start();
}

NamesFileError ScriptApi::defineNames()
{
    m_nameFunctions = installNameFunctions(m_engine);
    return runNamesFile(m_engine, m_nameFunctions,
                        QDir(m_context.suiteDir).filePath(namesFileName()), nullptr);
}

void ScriptApi::install()
{
    // The script that runs can't be included by itself.
    m_including.append(
        QFileInfo(m_context.testCaseDir + QLatin1String("/script.js")).canonicalFilePath());
    QJSEngine &engine = m_engine->engine();
    QQmlEngine::setObjectOwnership(this, QQmlEngine::CppOwnership);
    const QJSValue native = engine.newQObject(this);
    QJSValue installer = m_engine->internalFunction(QStringLiteral("scriptapi"));
    QJSValue outcome = installer.call({native, engine.globalObject(), m_nameFunctions,
                                       m_engine->internalFunction(QStringLiteral("scriptobjects")),
                                       m_engine->internalFunction(QStringLiteral("scriptdata"))});
    if (!outcome.isError()) {
        installer = m_engine->internalFunction(QStringLiteral("applicationapi"));
        outcome = installer.call({native, engine.globalObject(), outcome});
    }
    if (outcome.isError())
        qFatal("The script API is broken: %s", qUtf8Printable(outcome.toString()));
}

QObject *ScriptApi::application()
{
    return partOf(&ApplicationAccess::application);
}

QObject *ScriptApi::contexts()
{
    return partOf(&ApplicationAccess::contexts);
}

QObject *ScriptApi::verification()
{
    return partOf(&ApplicationAccess::verification);
}

QObject *ScriptApi::partOf(QObject *(ApplicationAccess::*part)())
{
    QString error;
    ApplicationAccess *applications = m_applications->get(&error);
    if (!applications) {
        throwError(error);
        return nullptr;
    }
    QObject *object = (applications->*part)();
    QQmlEngine::setObjectOwnership(object, QQmlEngine::CppOwnership);
    return object;
}

void ScriptApi::log(const QString &type, const QString &message, const QString &details)
{
    const TestResult::ResultType result = TestResult::stringToResult(type);
    m_context.result->addResult(currentLocalTime(), result, message + m_context.screenshot(result),
                                details, m_engine->currentStack());
    pauseAfter(result);
}

void ScriptApi::check(bool passed, const QString &message, const QString &details, bool expectFail)
{
    TestResult *result = m_context.result;
    const TestResult::ResultType type = TestResult::verificationType(passed, expectFail);
    const QString shownMessage = message + m_context.screenshot(type);
    result->startVP();
    result->addResult(currentLocalTime(), type, shownMessage, details, m_engine->currentStack());
    result->endVP();
    pauseAfter(type);
}

void ScriptApi::compareTexts(bool equal, const QString &expected, const QString &actual,
                             const QString &message, bool expectFail)
{
    // Equal objects may look different.
    const QString shownActual = equal ? expected : actual;
    check(equal, message, TestResult::compare(expected, shownActual).details, expectFail);
}

void ScriptApi::compareNumbers(int expected, int actual, const QString &message, bool expectFail)
{
    const TestResult::Comparison comparison = TestResult::compare(expected, actual);
    check(comparison.equal, message, comparison.details, expectFail);
}

void ScriptApi::startSection(const QString &title, const QString &description)
{
    const std::vector<LineInfo> stack = m_engine->currentStack();
    m_context.result->startSection(title, description, stack.empty() ? LineInfo() : stack.front());
}

void ScriptApi::endSection()
{
    const std::vector<LineInfo> stack = m_engine->currentStack();
    const QString error = m_context.result->endSection(stack.empty() ? LineInfo() : stack.front());
    if (!error.isEmpty())
        throwError(QLatin1String("endSection: ") + error);
}

void ScriptApi::attach(const QString &file, const QString &message)
{
    QString path = existingPath(file);
    if (!QFileInfo(path).isFile()) {
        throwError(QStringLiteral("attach: there is no file '%1'").arg(file));
        return;
    }
    if (!m_context.resultDir.isEmpty()) {
        const NewFile copy = copyToResultDir(path);
        if (!copy.error.isEmpty()) {
            throwError(QStringLiteral("attach: cannot copy '%1' to '%2': %3")
                           .arg(path, copy.path, copy.error));
            return;
        }
        path = copy.path;
    }
    m_context.result->addAttachment(TestResult::FILE_ATTACHMENT,
                                    message.isEmpty() ? QFileInfo(path).fileName() : message, path,
                                    m_engine->currentStack());
}

NewFile ScriptApi::copyToResultDir(const QString &path) const
{
    QFile source(path);
    const NumberedPath pathOf =
        attachmentPath(m_context.resultDir, QDir(m_context.testCaseDir).dirName(), QFileInfo(path));
    if (!source.open(QIODevice::ReadOnly))
        return {pathOf(1), source.errorString()};
    const NewFile copy = writeNewFile(pathOf, &source);
    if (copy.error.isEmpty())
        QFile::setPermissions(copy.path, source.permissions());
    return copy;
}

QString ScriptApi::existingPath(const QString &file) const
{
    if (file.isEmpty())
        return {};
    for (const QString &dir : {m_context.testCaseDir, m_context.suiteDir}) {
        const QString path = QDir(dir).absoluteFilePath(file);
        if (QFile::exists(path))
            return path;
    }
    return {};
}

QString ScriptApi::targetPath(const QString &file) const
{
    const QString path = existingPath(file);
    return path.isEmpty() ? QDir(m_context.testCaseDir).absoluteFilePath(file) : path;
}

QString ScriptApi::readFile(const QString &file)
{
    if (file.isEmpty()) {
        throwError(QStringLiteral("cannot read a file without a name"));
        return {};
    }
    QFile source(targetPath(file));
    if (!source.open(QIODevice::ReadOnly)) {
        throwError(QStringLiteral("cannot read '%1': %2").arg(file, source.errorString()));
        return {};
    }
    return decodedUtf8(source.readAll());
}

void ScriptApi::writeFile(const QString &file, const QString &text)
{
    if (file.isEmpty()) {
        throwError(QStringLiteral("cannot write a file without a name"));
        return;
    }
    const FileWriteResult result = writeFileSafely(targetPath(file), text.toUtf8());
    if (result.outcome != FileWriteResult::Written)
        throwError(QStringLiteral("cannot write '%1': %2").arg(file, result.error));
}

bool ScriptApi::fileExists(const QString &file) const
{
    return !existingPath(file).isEmpty();
}

QObject *ScriptApi::openData(const QString &file, const QString &sheet)
{
    QString error;
    std::unique_ptr<ScriptData> data = ScriptData::open(targetPath(file), sheet, &error);
    if (!data)
        throwError(QStringLiteral("data.open: cannot read '%1': %2").arg(file, error));
    // The engine deletes it when the script has let go of it.
    return data.release();
}

QString ScriptApi::environment(const QString &name) const
{
    return QString::fromStdString(Environment::getVariable(name.toStdString()));
}

QVariantList ScriptApi::scriptArguments() const
{
    return {m_context.scriptArguments.begin(), m_context.scriptArguments.end()};
}

QVariantList ScriptApi::pointTypes() const
{
    const QStringList types = Morvex::pointTypes();
    return {types.begin(), types.end()};
}

void ScriptApi::snooze(double seconds) const
{
    const double factor = m_context.snoozeFactor > 0 ? m_context.snoozeFactor : 1;
    const double milliseconds = seconds * factor * 1000;
    if (!(milliseconds > 0))
        return;
    pauseScript(static_cast<int>(qMin(milliseconds, double(std::numeric_limits<int>::max()))));
}

void ScriptApi::pause(int milliseconds) const
{
    pauseScript(milliseconds);
}

QJSValue ScriptApi::include(const QString &file)
{
    if (file.isEmpty()) {
        throwError(QStringLiteral("include: the name of the file is empty"));
        return {};
    }
    const ScriptFile script = readScriptFile(targetPath(file));
    if (!script.error.isEmpty()) {
        throwError(QLatin1String("include: ") + script.error);
        return {};
    }
    const QString path = QFileInfo(targetPath(file)).canonicalFilePath();
    if (m_including.contains(path)) {
        throwError(QStringLiteral("include: '%1' includes itself").arg(file));
        return {};
    }
    m_including += path;
    const ScriptEngine::Outcome outcome = m_engine->run(script.text, path);
    m_including.removeLast();
    QJSValue result = m_engine->engine().newObject();
    result.setProperty(QStringLiteral("hasThrown"), outcome.hasThrown);
    result.setProperty(QStringLiteral("value"), outcome.value);
    return result;
}

void ScriptApi::abortProcess() const
{
    std::abort();
}

void ScriptApi::throwError(const QString &message)
{
    m_engine->engine().throwError(message);
}

} // namespace Morvex
