#include "test/testsuite.h"

#include "shared/realpath.h"
#include "test/testconfig.h"
#include "test/testfilters.h"

#include <QFile>

#include <cstdio>
#include <cstdlib>

namespace Morvex {
namespace {

const QLatin1String defaultGroup("Default");

QString key(const char *name)
{
    return QString::fromLatin1(name);
}

} // namespace

TestSuite::TestSuite(const QDir &dir, const QString &settingsGroup)
    : m_dir(dir)
    , m_settingsGroup(settingsGroup)
{
    // Keeps the order and the filters that the caller chose.
    m_dir.setPath(cleanedPath(dir.path()));
    if (m_settingsGroup.startsWith(QLatin1Char('/')))
        m_settingsGroup.remove(0, 1);
    parseConfig();
    checkSettingsGroup(m_settingsGroup);
}

void TestSuite::parseConfig()
{
    if (m_settingsGroup.isEmpty() || m_settingsGroup == defaultGroup)
        m_settingsGroup = QString();
    const ConfParser parser(absoluteSuiteFilePath(QStringLiteral("suite.conf")), true);
    if (!parser.error().isEmpty()) {
        m_configLoadError = parser.error();
        return;
    }
    m_config = Config(parser.entries());
    m_config.setSettingsGroup(m_settingsGroup);
    mapWrappers();

    const QString path = absoluteSuiteFilePath(QStringLiteral("config.xml"));
    QStringList tags;
    const QString error =
        tryReadTestConfig(path, &m_summary, &m_description, &tags, &m_testSettings, &m_passwords);
    if (!error.isEmpty())
        m_configLoadError += QStringLiteral("error while reading configuration file ") + path +
                             QLatin1String(": ") + error;
}

// Older suites name the toolkits of Java.
void TestSuite::mapWrappers()
{
    if (!m_config.hasEntry(key("WRAPPERS")))
        return;
    QStringList names = wrappers();
    for (QString &name : names) {
        if (name == QLatin1String("SWT") || name == QLatin1String("AWT/Swing"))
            name = QStringLiteral("Java");
    }
    m_config.setEntry(key("WRAPPERS"), names);
}

void TestSuite::checkSettingsGroup(const QString &group) const
{
    QString name = group;
    if (name.endsWith(QLatin1Char('/')))
        name.chop(1);
    if (name.isEmpty())
        name = defaultGroup;
    if (name == defaultGroup || m_config.globalListEntry(key("SETTINGS_GROUPS")).contains(name))
        return;
    std::fprintf(stderr, "Settings group '%s' doesn't exist in test suite '%s'\n",
                 qUtf8Printable(name), qUtf8Printable(m_dir.dirName()));
    std::exit(-1);
}

QString TestSuite::absoluteSuiteFilePath(const QString &name) const
{
    return name.isEmpty() || QDir::isAbsolutePath(name) ? name : m_dir.absoluteFilePath(name);
}

void TestSuite::setApplicationLauncher(const QString &launcher)
{
    m_applicationLauncherOverride = launcher;
}

void TestSuite::setApplicationLauncherArgs(const QStringList &arguments)
{
    m_applicationLauncherArgsOverride = arguments;
}

void TestSuite::setAutOverride(const QString &aut)
{
    m_autOverride = aut;
}

void TestSuite::setEnvVarFileName(const QString &fileName)
{
    m_envVarFileNameOverride = fileName;
}

void TestSuite::setScriptArguments(const QStringList &arguments)
{
    m_scriptArguments = arguments;
}

void TestSuite::setScriptedObjectMapPath(const QString &path)
{
    m_scriptedObjectMapPath = path;
}

void TestSuite::setSkippedTestCases(const QStringList &testCases)
{
    m_skippedTestCases = testCases;
}

void TestSuite::setTags(const QStringList &tags)
{
    m_tags = tags;
}

void TestSuite::setRerun(bool isRerun)
{
    m_isRerun = isRerun;
}

void TestSuite::setCancellation(Cancellation *cancellation)
{
    m_cancellation = cancellation;
}

int TestSuite::version() const
{
    return qMax(1, m_config.entry(key("VERSION")).toInt());
}

bool TestSuite::implicitAutStart() const
{
    if (m_config.hasEntry(key("IMPLICITAUTSTART")))
        return m_config.boolEntry(key("IMPLICITAUTSTART"));
    return version() < 2;
}

QString TestSuite::cwd() const
{
    const QString cwd = m_config.entry(key("CWD"));
    if (cwd == QLatin1String("<AUT_path>"))
        return QStringLiteral("@app");
    if (cwd == QLatin1String("<CWD_of_Server>"))
        return QStringLiteral("@server");
    return cwd;
}

QString TestSuite::objectMap() const
{
    if (m_config.hasGlobalEntry(key("OBJECTMAP")))
        return absoluteSuiteFilePath(m_config.globalEntry(key("OBJECTMAP")));
    return absoluteSuiteFilePath(QStringLiteral("objects.map"));
}

// The key is looked for among the plain ones and read from the group: a group without it has the
// default of the version, whatever the plain key says.
int TestSuite::namingScheme() const
{
    const int versionDefault = version() < 2 ? 1 : 0;
    if (!m_config.hasGlobalEntry(key("NAMINGSCHEME")))
        return versionDefault;
    const QString scheme = m_config.entry(key("NAMINGSCHEME"));
    if (scheme == QLatin1String("MULTIPROP"))
        return 0;
    if (scheme == QLatin1String("HIERARCHICAL") || scheme == QLatin1String("HIERACHICAL"))
        return 1;
    return versionDefault;
}

QStringList TestSuite::wrappers() const
{
    return m_config.listEntry(key("WRAPPERS"));
}

QString TestSuite::defaultLanguage() const
{
    return m_config.globalEntry(key("LANGUAGE"));
}

QString TestSuite::envVarFileName() const
{
    if (!m_envVarFileNameOverride.isEmpty())
        return m_envVarFileNameOverride;
    return absoluteSuiteFilePath(m_config.entry(key("ENVVARS")));
}

QString TestSuite::classPathEnvironment() const
{
    const QString classPath = m_config.entry(key("CLASSPATH"));
    return classPath.isEmpty() ? QString() : QLatin1String("CLASSPATH=") + classPath;
}

QString TestSuite::keptRuns() const
{
    return m_config.entry(key("KEEP_RUNS")).trimmed();
}

QString TestSuite::failureScreenshots() const
{
    return m_config.entry(key("FAILURE_SCREENSHOTS")).trimmed();
}

QString TestSuite::timeout() const
{
    return m_config.entry(key("TIMEOUT")).trimmed();
}

bool TestSuite::useWhiteList() const
{
    return m_config.boolEntry(key("USE_WHITELIST"));
}

QString TestSuite::aut() const
{
    if (!m_autOverride.isEmpty())
        return m_autOverride;
    const QString aut = m_config.entry(key("AUT"));
    return aut.isEmpty() ? m_config.entry(key("CLASS")) : aut;
}

QString TestSuite::applicationHome() const
{
    return absoluteSuiteFilePath(m_config.entry(key("APPLICATION_HOME")));
}

QString TestSuite::callTimeout() const
{
    return m_config.entry(key("CALL_TIMEOUT")).trimmed();
}

QString TestSuite::applicationLauncher() const
{
    return m_applicationLauncherOverride.isEmpty() ? m_config.entry(key("LAUNCHER"))
                                                   : m_applicationLauncherOverride;
}

QStringList TestSuite::applicationLauncherArgs() const
{
    if (!m_applicationLauncherArgsOverride.isEmpty())
        return m_applicationLauncherArgsOverride;
    return ConfParser::splitArgs(m_config.entry(key("LAUNCHER_ARGUMENTS")));
}

bool TestSuite::hookSubProcesses() const
{
    if (m_config.hasEntry(key("HOOK_SUB_PROCESSES")))
        return m_config.boolEntry(key("HOOK_SUB_PROCESSES"));
    return wrappers() == QStringList(QStringLiteral("Java"));
}

std::vector<std::string> TestSuite::getTestCaseTags(const QString &testCaseName,
                                                    QString *errorMessage) const
{
    const QString path =
        m_dir.absolutePath() + QLatin1Char('/') + testCaseName + QLatin1String("/config.xml");
    if (!QFile::exists(path))
        return {};
    QString summary;
    QString description;
    QStringList tags;
    *errorMessage = tryReadTestConfig(path, &summary, &description, &tags, nullptr, nullptr);
    if (!errorMessage->isEmpty())
        return {};
    std::vector<std::string> result;
    for (const QString &tag : tags)
        result.push_back(tag.toStdString());
    return result;
}

QString TestSuite::extensionForLanguage(const QString &language)
{
    static const QMap<QString, QString> extensions{
        {QStringLiteral("JavaScript"), QStringLiteral("js")},
        {QStringLiteral("Perl"), QStringLiteral("pl")},
        {QStringLiteral("Python"), QStringLiteral("py")},
        {QStringLiteral("Ruby"), QStringLiteral("rb")},
        {QStringLiteral("Tcl"), QStringLiteral("tcl")},
    };
    return extensions.value(language);
}

bool TestSuite::hasFeatureFile(const QString &testCase) const
{
    const QDir testCaseDir(m_dir.filePath(testCase), QStringLiteral("*.feature"),
                           QDir::Name | QDir::IgnoreCase);
    return !testCaseDir.entryList().isEmpty();
}

QStringList TestSuite::discoverTestCases() const
{
    const QStringList found =
        m_dir.entryList({QStringLiteral("tst_*")}, QDir::Dirs | QDir::Readable);
    QStringList testCases;
    for (const QString &name :
         ConfParser::splitArgs(m_config.globalEntry(QStringLiteral("TEST_CASES")))) {
        if (found.contains(name))
            testCases += name;
    }
    for (const QString &name : found) {
        if (!testCases.contains(name))
            testCases += name;
    }
    return testCases;
}

// The same number has to give the same order for ever: it is shown for a later run.
QStringList TestSuite::shuffled(QStringList testCases, unsigned int randomSeed)
{
    if (randomSeed == 0)
        return testCases;
    quint32 state = randomSeed;
    for (int i = 0; i < testCases.size(); ++i) {
        state = state * 1103515245U + 12345U;
        const auto count = static_cast<quint32>(testCases.size());
        testCases.move(i, static_cast<int>(((state >> 16) & 0x7FFFU) % count));
    }
    return testCases;
}

QStringList TestSuite::selectedByTags(const QStringList &testCases, QString *error) const
{
    if (m_tags.isEmpty())
        return testCases;
    const std::unique_ptr<FilterInterface> filter(allFilterByArgs(m_tags, {}, error));
    if (!filter)
        return {};
    QStringList selected;
    for (const QString &testCase : testCases) {
        const std::vector<std::string> tags = getTestCaseTags(testCase, error);
        if (!error->isEmpty())
            return {};
        if (hasFeatureFile(testCase) || filter->shouldExecuteWithTags(tags))
            selected += testCase;
    }
    return selected;
}

} // namespace Morvex
