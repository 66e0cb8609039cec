#pragma once

#include <QByteArray>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QString>

/// A run on disk as it comes in, in a directory of its own: the messages of its entries, and its
/// files. It stays there until a report has taken it, whatever happens to this server.
class ReceivedRun
{
public:
    enum RecordKind : qint8 { FileRecord, EntryRecord, VideoRecord };

    /// A record of the messages file: an entry as it came, or where a file of that name is. Files
    /// follow their entry; a video belongs to all of them.
    struct Record
    {
        qint8 kind = FileRecord;
        QByteArray content;
        QString storedName;
    };

    /// Makes the directory below @p parent. @p reportName is the report that the run belongs to.
    ReceivedRun(const QDir &parent, const QString &reportName);

    /// False when the disk has no room: what came before is kept.
    bool addEntry(const QByteArray &message);
    bool addFile(const QByteArray &name, const QByteArray &content);
    bool writeVideo(const QByteArray &name, const QByteArray &content);
    bool seekVideo(const QByteArray &name, qint64 position);

    /// Whether the run may have so many bytes more of files.
    bool hasRoomFor(qint64 size) const;
    /// Closes all files.
    void finish();

    QString directory() const { return m_directory.path(); }
    bool isOk() const { return m_messages.isOpen(); }

    /// Calls @p use with each record of a run that was finished or cut off.
    template <typename Use>
    static void read(const QString &directory, QString *reportName, Use use)
    {
        QFile file(directory + QLatin1String("/messages"));
        file.open(QIODevice::ReadOnly);
        QDataStream stream(&file);
        stream >> *reportName;
        while (stream.status() == QDataStream::Ok && !stream.atEnd()) {
            Record record;
            stream >> record.kind >> record.content >> record.storedName;
            if (stream.status() == QDataStream::Ok && !use(record))
                return;
        }
    }

private:
    bool add(const Record &record);
    QString storedNameFor(const QByteArray &name);
    QFile *videoFile(const QByteArray &name);

    QDir m_directory;
    QFile m_messages;
    QDataStream m_stream;
    QHash<QByteArray, QFile *> m_videos;
    qint64 m_fileBytes = 0;
    int m_files = 0;
};
