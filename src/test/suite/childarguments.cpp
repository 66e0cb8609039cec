#include "test/suite/childarguments.h"

#include "test/suite/applicationwords.h"
#include "test/suite/runoptions.h"
#include "test/testsuite.h"

#include <QFile>

namespace Morvex {
namespace {

QString option(const char *name)
{
    return QString::fromLatin1(name);
}

// With their blanks protected by backslashes.
QStringList split_args(const QString &text)
{
    return applicationWords(text).replaceInStrings(QStringLiteral(" "), QStringLiteral("\\ "));
}

QStringList repeated(const char *name, const QStringList &values)
{
    QStringList arguments;
    for (const QString &value : values)
        arguments << option(name) << value;
    return arguments;
}

QStringList ifNotEmpty(const char *name, const QString &value)
{
    return value.isEmpty() ? QStringList() : QStringList{option(name), value};
}

QStringList flag(const char *name, bool isSet)
{
    return isSet ? QStringList(option(name)) : QStringList();
}

QString quotedForLauncher(const QString &argument)
{
    if (argument.startsWith(QLatin1Char('-')) || argument.contains(QLatin1Char(' ')))
        return QLatin1Char('"') + argument + QLatin1Char('"');
    return argument;
}

} // namespace

ChildArguments::ChildArguments(const TestSuite &suite)
    : m_suite(suite)
{
}

QStringList ChildArguments::forAttempt(const QString &testCase, const RunOptions &options,
                                       int retryOption) const
{
    QStringList arguments = server(options.host, options.port, testCase);
    arguments += wrappers() + envVarFile() + envVars(options.envVars);
    arguments += objectMap() + cwd() + hooks();
    arguments += flag("--interactive", options.interactive);
    if (options.snoozeFactor > 0)
        arguments << option("--snoozeFactor") << QString::number(options.snoozeFactor, 'g', 6);
    arguments += flag("--enable-video-capture", m_suite.videoCaptureEnabled);
    arguments += ifNotEmpty("--resultdir", options.resultDir);
    arguments += launcher() + version() + launcherArguments();
    for (const QString &tag : m_suite.tags())
        arguments += QStringLiteral("--tags=%1").arg(tag);
    if (retryOption > 0)
        arguments << option("--retry") << QString::number(retryOption);
    if (m_suite.implicitAutStart())
        arguments += application();
    if (!m_suite.scriptArguments().isEmpty())
        arguments << option("--scriptargs") << m_suite.scriptArguments();
    return arguments;
}

QStringList ChildArguments::forRecording(const QString &testCase,
                                         const RecordOptions &options) const
{
    QStringList arguments = server(options.host, options.port, testCase);
    arguments += wrappers();
    arguments += option("--record");
    arguments += repeated("--testdata", options.testData);
    arguments += flag("--disableEventCompression", options.disableEventCompression);
    arguments += flag("--useWaitFor", options.useWaitFor);
    arguments += envVarFile();
    arguments << option("--naming") << QString::number(m_suite.namingScheme());
    arguments += envVars(options.envVars) + objectMap();
    arguments += flag("--useScriptedObjectMap", options.useScriptedObjectMap);
    if (!m_suite.defaultLanguage().isEmpty())
        arguments << option("--lang") << TestSuite::extensionForLanguage(m_suite.defaultLanguage());
    arguments += flag("--explicitAutStart", !m_suite.implicitAutStart());
    return arguments + version() + cwd() + hooks() + launcher() + launcherArguments() +
           application();
}

QStringList ChildArguments::server(const QString &host, int port, const QString &testCase) const
{
    QStringList arguments{option("--host"), host, option("--port"), QString::number(port)};
    if (m_suite.settingsGroup() != QLatin1String("Default"))
        arguments += ifNotEmpty("--settingsGroup", m_suite.settingsGroup());
    return arguments << option("--testcase") << testCase;
}

QStringList ChildArguments::wrappers() const
{
    return repeated("--wrapper", m_suite.wrappers());
}

QStringList ChildArguments::envVarFile() const
{
    const QString fileName = m_suite.envVarFileName();
    return QFile::exists(fileName) ? ifNotEmpty("--envvars", fileName) : QStringList();
}

QStringList ChildArguments::envVars(const QStringList &assignments) const
{
    return ifNotEmpty("--envvar", m_suite.classPathEnvironment()) +
           repeated("--envvar", assignments);
}

QStringList ChildArguments::objectMap() const
{
    return ifNotEmpty("--objectmap", m_suite.absoluteSuiteFilePath(m_suite.objectMap()));
}

QStringList ChildArguments::cwd() const
{
    return ifNotEmpty("--cwd", m_suite.cwd());
}

QStringList ChildArguments::hooks() const
{
    return flag("--hook-subprocesses", m_suite.hookSubProcesses()) +
           flag("--use-whitelist", m_suite.useWhiteList());
}

QStringList ChildArguments::launcher() const
{
    return ifNotEmpty("--applauncher", m_suite.applicationLauncher());
}

QStringList ChildArguments::launcherArguments() const
{
    QStringList quoted;
    for (const QString &argument : m_suite.applicationLauncherArgs())
        quoted += quotedForLauncher(argument);
    return ifNotEmpty("--launcherargs", quoted.join(QLatin1Char(' ')));
}

QStringList ChildArguments::version() const
{
    return {option("--suiteVersion"), QString::number(m_suite.version())};
}

QStringList ChildArguments::application() const
{
    const QString aut = m_suite.aut();
    return aut.isEmpty() ? QStringList() : QStringList(option("--aut")) + split_args(aut);
}

} // namespace Morvex
