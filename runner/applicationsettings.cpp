#include "runner/applicationsettings.h"

#include "objectmodel/value/decodedtext.h"
#include "runner/messages.h"
#include "runner/runneroptions.h"
#include "runner/runtestcase.h"
#include "shared/confparser.h"
#include "shared/files/regularfile.h"
#include "test/child/testcasedeadline.h"
#include "test/suite/applicationwords.h"
#include "test/testsuite.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace Morvex {
namespace {

const char variable[] = "MORVEX_APPLICATION_OPTIONS";
const int maxBoundSeconds = 24 * 60 * 60;

// The run of a suite puts a backslash before each blank within an argument.
QStringList applicationOf(const RunnerOptions &options)
{
    QStringList words = options.aut;
    if (isReportStreamed(options))
        words.replaceInStrings(QStringLiteral("\\ "), QStringLiteral(" "));
    return words;
}

QStringList textsOf(const QJsonValue &array)
{
    QStringList texts;
    for (const QJsonValue &text : array.toArray())
        texts += text.toString();
    return texts;
}

QStringList firstOf(const QList<QStringList> &lists)
{
    for (const QStringList &list : lists) {
        if (!list.isEmpty())
            return list;
    }
    return {};
}

QString firstOf(const QStringList &texts)
{
    for (const QString &text : texts) {
        if (!text.isEmpty())
            return text;
    }
    return {};
}

QStringList launcherOf(const RunnerOptions &options, const QStringList &argumentsOfRun,
                       const TestSuite &suite)
{
    const QString launcher = firstOf({options.applicationLauncher, suite.applicationLauncher()});
    if (launcher.isEmpty())
        return {};
    return QStringList{launcher} +
           firstOf({argumentsOfRun, ConfParser::splitArgs(options.launcherArguments),
                    suite.applicationLauncherArgs()});
}

// Lines of file names; lines that begin with # are comments.
QStringList readWhiteList()
{
    QFile file(QStringLiteral("whitelist.txt"));
    QStringList names;
    if (!openRegularFile(&file).isEmpty()) {
        printMessage(QStringLiteral("warning: processes of all programs can be tested: the file "
                                    "'whitelist.txt' of the suite can't be read"));
        return names;
    }
    const QStringList lines = decodedUtf8(file.readAll()).split(QLatin1Char('\n'));
    for (const QString &line : lines) {
        if (!line.trimmed().isEmpty() && !line.startsWith(QLatin1Char('#')))
            names += line.trimmed();
    }
    if (names.isEmpty())
        printMessage(QStringLiteral("warning: processes of all programs can be tested: the file "
                                    "'whitelist.txt' of the suite names none"));
    return names;
}

// Empty for none.
QString homeSeedOf(const TestSuite &suite)
{
    const QString seed = suite.applicationHome();
    if (seed.isEmpty() || QFileInfo(seed).isDir())
        return seed;
    printMessage(QStringLiteral("warning: the home of the application is empty at first: "
                                "APPLICATION_HOME of suite.conf is not a directory: '%1'")
                     .arg(seed));
    return {};
}

int boundOf(const TestSuite &suite, int otherwise)
{
    if (suite.callTimeout().isEmpty())
        return otherwise;
    bool isNumber = false;
    const double seconds = suite.callTimeout().toDouble(&isNumber);
    if (isNumber && seconds > 0 && seconds <= maxBoundSeconds)
        return static_cast<int>(seconds * 1000);
    printMessage(QStringLiteral("warning: CALL_TIMEOUT of suite.conf is not a number of seconds "
                                "greater than 0: '%1'")
                     .arg(suite.callTimeout()));
    return otherwise;
}

QString workingDirectoryOf(const QString &cwd)
{
    if (cwd.isEmpty() || cwd == QLatin1String("@server"))
        return {};
    return cwd == QLatin1String("@app") ? cwd : QDir::current().absoluteFilePath(cwd);
}

} // namespace

void passOnApplicationOptions(const RunnerOptions &options, const TestSuite &suite)
{
    QJsonObject passedOn;
    // A backslash at the end of one would be lost on a command line.
    if (!suite.applicationLauncherArgs().isEmpty())
        passedOn.insert(QStringLiteral("launcherArguments"),
                        QJsonArray::fromStringList(suite.applicationLauncherArgs()));
    if (!options.aut.isEmpty())
        passedOn.insert(QStringLiteral("aut"), QJsonArray::fromStringList(options.aut));
    if (!options.cwd.isEmpty())
        passedOn.insert(QStringLiteral("cwd"), QDir::isAbsolutePath(options.cwd) ||
                                                       options.cwd.startsWith(QLatin1Char('@'))
                                                   ? options.cwd
                                                   : QDir::current().absoluteFilePath(options.cwd));
    if (options.hookSubProcesses)
        passedOn.insert(QStringLiteral("hookSubProcesses"), true);
    if (options.useWhiteList)
        passedOn.insert(QStringLiteral("useWhiteList"), true);
    if (passedOn.isEmpty())
        qunsetenv(variable);
    else
        qputenv(variable, QJsonDocument(passedOn).toJson(QJsonDocument::Compact));
}

Applications::Settings applicationSettings(const RunnerOptions &options)
{
    const TestSuite suite(QDir::current(), options.settingsGroup);
    const QJsonObject ofRun = QJsonDocument::fromJson(qgetenv(variable)).object();
    Applications::Settings settings;
    settings.suiteApplication =
        firstOf({applicationOf(options), textsOf(ofRun.value(QLatin1String("aut"))),
                 applicationWords(suite.aut())});
    settings.launcher =
        launcherOf(options, textsOf(ofRun.value(QLatin1String("launcherArguments"))), suite);
    settings.workingDirectory = workingDirectoryOf(
        firstOf({ofRun.value(QLatin1String("cwd")).toString(), options.cwd, suite.cwd()}));
    settings.homeSeed = homeSeedOf(suite);
    if (options.useWhiteList || ofRun.value(QLatin1String("useWhiteList")).toBool())
        settings.whiteList = readWhiteList();
    settings.hooksSubProcesses =
        options.hookSubProcesses || ofRun.value(QLatin1String("hookSubProcesses")).toBool();
    settings.bound = boundOf(suite, settings.bound);
    settings.deadline = testCaseDeadline();
    return settings;
}

} // namespace Morvex
