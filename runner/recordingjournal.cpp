#include "runner/recordingjournal.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <sys/file.h>

namespace Morvex {
namespace {

const int version = 1;
const qint64 maxLineSize = 16ll * 1024 * 1024;

QString error(const QString &text, const QFile &file)
{
    return text.arg(file.fileName(), file.errorString());
}

} // namespace

RecordingJournal::RecordingJournal(const QString &testCaseDirectory)
    : m_file(testCaseDirectory + QLatin1String(".recording"))
{
}

QString RecordingJournal::create(const QString &start)
{
    m_start = start;
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::NewOnly | QIODevice::Unbuffered))
        return error(QStringLiteral("cannot make the file '%1' for the recording: %2"), m_file);
    // It holds all that the user types.
    if (!m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner))
        return error(QStringLiteral("cannot keep '%1' from others: %2"), m_file);
    const QString reason = lock();
    return reason.isEmpty()
               ? write({{QStringLiteral("recording"), version}, {QStringLiteral("start"), start}})
               : reason;
}

// Until this process ends.
QString RecordingJournal::lock()
{
    return ::flock(m_file.handle(), LOCK_EX | LOCK_NB) == 0
               ? QString()
               : QStringLiteral("'%1' is being recorded by another process").arg(m_file.fileName());
}

QString RecordingJournal::add(const QVariantMap &action)
{
    m_actions += QVariant(action);
    return write(action);
}

QString RecordingJournal::write(const QVariantMap &line)
{
    const QByteArray bytes =
        QJsonDocument(QJsonObject::fromVariantMap(line)).toJson(QJsonDocument::Compact) + '\n';
    return m_file.write(bytes) == bytes.size()
               ? QString()
               : error(QStringLiteral("cannot write to '%1': %2"), m_file);
}

QString RecordingJournal::load()
{
    if (!m_file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly))
        return error(QStringLiteral("cannot read '%1': %2"), m_file);
    const QString reason = lock();
    if (!reason.isEmpty())
        return reason;
    bool isFirst = true;
    while (!m_file.atEnd()) {
        const QVariantMap line =
            QJsonDocument::fromJson(m_file.readLine(maxLineSize)).object().toVariantMap();
        if (isFirst && line.value(QStringLiteral("recording")).toInt() != version)
            return QStringLiteral("'%1' is not a recording of this version").arg(m_file.fileName());
        if (isFirst)
            m_start = line.value(QStringLiteral("start")).toString();
        else if (!line.isEmpty())
            m_actions += QVariant(line);
        isFirst = false;
    }
    return isFirst ? QStringLiteral("'%1' is empty").arg(m_file.fileName()) : QString();
}

} // namespace Morvex
