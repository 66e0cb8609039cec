#include "test/testcase.h"

#include "shared/realpath.h"
#include "test/testconfig.h"
#include "test/testresult.h"

#include <QDir>
#include <QFile>

namespace Morvex {

TestCase::TestCase(TestResult *result, const QString &name)
    : m_result(result)
    , m_name(name)
{
    readConfiguration();
    startResult();
}

TestCase::TestCase(TestResult *result, const QDir &dir)
    : m_result(result)
    , m_name(dir.dirName())
    , m_dir(std::make_unique<QDir>(dir))
{
    m_dir->setPath(cleanedPath(dir.path()));
    readConfiguration();
    startResult();
}

TestCase::~TestCase() = default;

bool TestCase::init()
{
    return true;
}

bool TestCase::cleanup()
{
    return true;
}

QDir TestCase::testCaseDirectory() const
{
    return m_dir ? *m_dir : QDir::current();
}

void TestCase::run(bool complete)
{
    startResult();
    if (init())
        execute();
    cleanup();
    if (complete)
        m_result->completed();
}

void TestCase::startResult()
{
    if (m_result->isStarted())
        return;
    if (m_dir)
        m_result->start(m_name, *m_dir, m_summary, m_description);
    else
        m_result->start(m_name, m_summary, m_description);
}

QString TestCase::configurationFile() const
{
    const QString fileName = QStringLiteral("config.xml");
    if (m_dir && m_dir->exists(fileName))
        return m_dir->filePath(fileName);
    const QString byName = m_name + QLatin1Char('/') + fileName;
    return QFile::exists(byName) ? byName : QString();
}

void TestCase::readConfiguration()
{
    const QString path = configurationFile();
    if (path.isEmpty())
        return;
    const QString error =
        tryReadTestConfig(path, &m_summary, &m_description, &m_tags, nullptr, nullptr);
    if (!error.isEmpty())
        qWarning("error while reading configuration file %s: %s", qUtf8Printable(path),
                 qUtf8Printable(error));
}

} // namespace Morvex
