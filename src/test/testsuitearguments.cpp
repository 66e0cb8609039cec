// The command lines of the children that run and record test cases.

#include "test/testcaseprocess.h"
#include "test/testsuite.h"
#include "test/testsuiterunoptions.h"

#include <QFile>
#include <QProcess>

namespace Morvex {
namespace {

QString option(const char *name)
{
    return QString::fromLatin1(name);
}

// The words of an application's command line, with their blanks protected by backslashes. Double
// quotes hold a word together and are dropped.
QStringList split_args(const QString &text)
{
    QStringList arguments;
    QString argument;
    bool inQuotes = false;
    const auto finishArgument = [&arguments, &argument] {
        if (argument.isEmpty())
            return;
        arguments += argument.replace(QLatin1Char(' '), QLatin1String("\\ "));
        argument.clear();
    };
    for (const QChar character : text) {
        if (character == QLatin1Char('"'))
            inQuotes = !inQuotes;
        else if (character == QLatin1Char(' ') && !inQuotes)
            finishArgument();
        else
            argument += character;
    }
    finishArgument();
    return arguments;
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

QStringList TestSuite::serverArguments(const QString &host, int port, const QString &testCase) const
{
    QStringList arguments{option("--host"), host, option("--port"), QString::number(port)};
    if (m_settingsGroup != QLatin1String("Default"))
        arguments += ifNotEmpty("--settingsGroup", m_settingsGroup);
    return arguments << option("--testcase") << testCase;
}

QStringList TestSuite::wrapperArguments() const
{
    return repeated("--wrapper", wrappers());
}

QStringList TestSuite::envVarFileArguments() const
{
    const QString fileName = envVarFileName();
    return QFile::exists(fileName) ? ifNotEmpty("--envvars", fileName) : QStringList();
}

QStringList TestSuite::envVarArguments(const QStringList &envVars) const
{
    return ifNotEmpty("--envvar", classPathEnvironment()) + repeated("--envvar", envVars);
}

QStringList TestSuite::objectMapArguments() const
{
    return ifNotEmpty("--objectmap", absoluteSuiteFilePath(objectMap()));
}

QStringList TestSuite::cwdArguments() const
{
    return ifNotEmpty("--cwd", cwd());
}

QStringList TestSuite::hookArguments() const
{
    return flag("--hook-subprocesses", hookSubProcesses()) +
           flag("--use-whitelist", useWhiteList());
}

QStringList TestSuite::launcherArguments() const
{
    QStringList quoted;
    for (const QString &argument : applicationLauncherArgs())
        quoted += quotedForLauncher(argument);
    return ifNotEmpty("--launcherargs", quoted.join(QLatin1Char(' ')));
}

QStringList TestSuite::testCaseArguments(const QString &testCase, const RunOptions &options,
                                         int retryOption) const
{
    QStringList arguments = serverArguments(options.host, options.port, testCase);
    arguments += wrapperArguments();
    arguments += envVarFileArguments();
    arguments += envVarArguments(options.envVars);
    arguments += objectMapArguments();
    arguments += cwdArguments();
    arguments += hookArguments();
    arguments += flag("--interactive", options.interactive);
    if (options.snoozeFactor > 0)
        arguments << option("--snoozeFactor") << QString::number(options.snoozeFactor, 'g', 6);
    arguments += flag("--enable-video-capture", videoCaptureEnabled);
    arguments += ifNotEmpty("--resultdir", options.resultDir);
    arguments += ifNotEmpty("--applauncher", applicationLauncher());
    arguments << option("--suiteVersion") << QString::number(version());
    arguments += launcherArguments();
    for (const QString &tag : m_tags)
        arguments += QStringLiteral("--tags=%1").arg(tag);
    if (retryOption > 0)
        arguments << option("--retry") << QString::number(retryOption);
    if (implicitAutStart() && !aut().isEmpty())
        arguments << option("--aut") << split_args(aut());
    if (!m_scriptArguments.isEmpty())
        arguments << option("--scriptargs") << m_scriptArguments;
    return arguments;
}

void TestSuite::record(bool disableEventCompression, bool useWaitFor, bool useScriptedObjectMap,
                       const QString &testCase, const QStringList &testData, const QString &host,
                       int port, const QStringList &envVars)
{
    setSuiteDirVariable();
    QStringList arguments = serverArguments(host, port, testCase);
    arguments += wrapperArguments();
    arguments += option("--record");
    arguments += repeated("--testdata", testData);
    arguments += flag("--disableEventCompression", disableEventCompression);
    arguments += flag("--useWaitFor", useWaitFor);
    arguments += envVarFileArguments();
    arguments << option("--naming") << QString::number(namingScheme());
    arguments += envVarArguments(envVars);
    arguments += objectMapArguments();
    arguments += flag("--useScriptedObjectMap", useScriptedObjectMap);
    if (!defaultLanguage().isEmpty())
        arguments << option("--lang") << extensionForLanguage(defaultLanguage());
    arguments += flag("--explicitAutStart", !implicitAutStart());
    arguments << option("--suiteVersion") << QString::number(version());
    arguments += cwdArguments();
    arguments += hookArguments();
    arguments += ifNotEmpty("--applauncher", applicationLauncher());
    arguments += launcherArguments();
    if (!aut().isEmpty())
        arguments << option("--aut") << split_args(aut());
    QProcess::startDetached(TestCaseProcess::program(), arguments);
}

} // namespace Morvex
