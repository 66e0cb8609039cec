#include "receivedrun.h"

#include <QTemporaryDir>

namespace {

const qint64 maxFileBytes = qint64(4) * 1024 * 1024 * 1024;
const int maxNameSize = 100;
const int maxVideos = 100;

// Names a file, whatever directories are in the name.
QString fileNameOf(const QByteArray &name)
{
    QString file = QString::fromUtf8(QByteArray::fromPercentEncoding(name)).section('/', -1);
    file.remove(QChar());
    return file.right(maxNameSize);
}

QString makeDirectory(const QDir &parent)
{
    QTemporaryDir directory(parent.filePath(QStringLiteral("run-XXXXXX")));
    directory.setAutoRemove(false);
    return directory.path();
}

} // namespace

ReceivedRun::ReceivedRun(const QDir &parent, const QString &reportName)
    : m_directory(makeDirectory(parent))
    , m_messages(m_directory.filePath(QStringLiteral("messages")))
{
    m_directory.mkdir(QStringLiteral("files"));
    m_messages.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    m_stream.setDevice(&m_messages);
    m_stream << reportName;
}

bool ReceivedRun::add(const Record &record)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << record.kind << record.content << record.storedName;
    return m_messages.write(bytes) == bytes.size();
}

bool ReceivedRun::addEntry(const QByteArray &message)
{
    return add({EntryRecord, message, QString()});
}

QString ReceivedRun::storedNameFor(const QByteArray &name)
{
    return QString::number(++m_files) + QLatin1Char('-') + fileNameOf(name);
}

bool ReceivedRun::addFile(const QByteArray &name, const QByteArray &content)
{
    const QString storedName = storedNameFor(name);
    QFile file(m_directory.filePath(QLatin1String("files/") + storedName));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        file.write(content) != content.size())
        return false;
    m_fileBytes += content.size();
    return add({FileRecord, name, storedName});
}

// Null when there are too many.
QFile *ReceivedRun::videoFile(const QByteArray &name)
{
    if (QFile *known = m_videos.value(name))
        return known;
    if (m_videos.size() == maxVideos)
        return nullptr;
    const QString storedName = storedNameFor(name);
    auto *file = new QFile(m_directory.filePath(QLatin1String("files/") + storedName));
    m_videos.insert(name, file);
    file->open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    add({VideoRecord, name, storedName});
    return file;
}

bool ReceivedRun::writeVideo(const QByteArray &name, const QByteArray &content)
{
    QFile *file = videoFile(name);
    m_fileBytes += content.size();
    return file && file->write(content) == content.size();
}

bool ReceivedRun::seekVideo(const QByteArray &name, qint64 position)
{
    QFile *file = videoFile(name);
    return file && position >= 0 && position <= maxFileBytes && file->seek(position);
}

bool ReceivedRun::hasRoomFor(qint64 size) const
{
    return m_fileBytes + size <= maxFileBytes;
}

void ReceivedRun::finish()
{
    qDeleteAll(m_videos);
    m_videos.clear();
    m_messages.close();
}
