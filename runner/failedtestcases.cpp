#include "runner/failedtestcases.h"

#include "shared/files/regularfile.h"
#include "shared/files/writefile.h"
#include "shared/realpath.h"
#include "shared/settings.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QUrl>

namespace Morvex {
namespace {

QString fileNameFor(const QString &suitePath)
{
    const QByteArray hash =
        QCryptographicHash::hash(suitePath.toUtf8(), QCryptographicHash::Sha1).toHex();
    return Settings::morvexSettingsDir() + QLatin1String("/failed/") + QString::fromLatin1(hash) +
           QLatin1String(".txt");
}

// One line, whatever characters the name has.
QByteArray asLine(QString name)
{
    name.replace(QLatin1Char('%'), QLatin1String("%25"));
    name.replace(QLatin1Char('\n'), QLatin1String("%0A"));
    return name.toUtf8() + '\n';
}

} // namespace

FailedTestCases::FailedTestCases(const QString &suiteDir)
    : m_suitePath(realPath(suiteDir))
    , m_fileName(fileNameFor(m_suitePath))
{
}

bool FailedTestCases::isRecorded() const
{
    return QFile::exists(m_fileName);
}

// The first line names the suite, for the eye of a person who looks into the file.
QStringList FailedTestCases::read() const
{
    QFile file(m_fileName);
    if (!openRegularFile(&file).isEmpty())
        return {};
    QStringList names;
    for (const QByteArray &line : file.readAll().split('\n').mid(1)) {
        if (!line.isEmpty())
            names += QUrl::fromPercentEncoding(line);
    }
    return names;
}

QString FailedTestCases::write(const QStringList &testCases) const
{
    QDir().mkpath(QFileInfo(m_fileName).path());
    QByteArray text = "# " + asLine(m_suitePath);
    for (const QString &testCase : testCases)
        text += asLine(testCase);
    const FileWriteResult result = writeFileSafely(m_fileName, text);
    if (result.outcome == FileWriteResult::Written)
        return {};
    return QStringLiteral("cannot keep the failed test cases in '%1': %2")
        .arg(m_fileName, result.error);
}

} // namespace Morvex
