#include "runner/recordingjournal.h"

#include "runner/recordedactions.h"
#include "shared/files/regularfile.h"
#include "test/openreportfile.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sys/file.h>

namespace Morvex {
namespace {

const int version = 1;
const qint64 bytesPerMiB = 1024ll * 1024;
const qint64 maxLineSize = 16 * bytesPerMiB;
const qint64 maxSize = 256 * bytesPerMiB;
const int maxActions = 1000000;

QString error(const QString &text, const QFile &file)
{
    return text.arg(file.fileName(), file.errorString());
}

QString noRecording(const QFile &file)
{
    return QStringLiteral("'%1' is not a recording of this version").arg(file.fileName());
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
    const QString reason = begin();
    if (!reason.isEmpty())
        m_file.remove();
    return reason;
}

QString RecordingJournal::begin()
{
    // It holds all that the user types.
    if (!m_file.setPermissions(QFile::ReadOwner | QFile::WriteOwner))
        return error(QStringLiteral("cannot keep '%1' from others: %2"), m_file);
    const QString reason = lock();
    return reason.isEmpty()
               ? write({{QStringLiteral("recording"), version}, {QStringLiteral("start"), m_start}})
               : reason;
}

// Until this process ends.
QString RecordingJournal::lock()
{
    return ::flock(m_file.handle(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK
               ? QString()
               : QStringLiteral("'%1' is being recorded by another process").arg(m_file.fileName());
}

QString RecordingJournal::add(const QVariantMap &action)
{
    if (m_error.isEmpty())
        m_error = write(action);
    if (m_error.isEmpty())
        m_actions += QVariant(action);
    return m_error;
}

QString RecordingJournal::write(const QVariantMap &line)
{
    const QByteArray bytes =
        QJsonDocument(QJsonObject::fromVariantMap(line)).toJson(QJsonDocument::Compact) + '\n';
    const qint64 size = m_file.size();
    if (m_actions.size() >= maxActions || bytes.size() > maxLineSize ||
        size + bytes.size() > maxSize)
        return QStringLiteral("'%1' holds no more than %2 actions and %3 MiB")
            .arg(m_file.fileName())
            .arg(maxActions)
            .arg(maxSize / bytesPerMiB);
    if (writeWhole(m_file.handle(), bytes.constData(), static_cast<std::size_t>(bytes.size())))
        return {};
    const QString reason = QStringLiteral("cannot write to '%1': %2")
                               .arg(m_file.fileName(), QString::fromLocal8Bit(strerror(errno)));
    // A part of a line is none.
    m_file.resize(size);
    return reason;
}

QString RecordingJournal::load()
{
    const QString reason = openRegularFile(&m_file, QIODevice::ReadWrite | QIODevice::ExistingOnly);
    if (!reason.isEmpty())
        return QStringLiteral("cannot read '%1': %2").arg(m_file.fileName(), reason);
    const QString holder = lock();
    if (!holder.isEmpty())
        return holder;
    return m_file.size() > maxSize ? noRecording(m_file) : readLines();
}

// A recorder that was killed before its first line has made an empty file.
QString RecordingJournal::readLines()
{
    bool isFirst = true;
    while (!m_file.atEnd()) {
        const QVariantMap line =
            QJsonDocument::fromJson(m_file.readLine(maxLineSize)).object().toVariantMap();
        if ((isFirst && line.value(QStringLiteral("recording")).toInt() != version) ||
            m_actions.size() > maxActions)
            return noRecording(m_file);
        if (isFirst)
            m_start = line.value(QStringLiteral("start")).toString();
        else if (!line.isEmpty())
            m_actions += QVariant(line);
        isFirst = false;
    }
    return {};
}

bool RecordingJournal::hasUserActions() const
{
    const std::vector<EventData> events = eventsOfActions(m_actions, false);
    return std::any_of(events.begin(), events.end(), [](const EventData &event) {
        return event.kind() != EventData::APPLICATION_START;
    });
}

} // namespace Morvex
