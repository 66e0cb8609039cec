#pragma once

#include "test/testresult.h"
#include "test/upload/uploadaddress.h"

#include <QByteArray>
#include <QEvent>

class QObject;

namespace Morvex {

// The numbers of the events between the two threads of an upload. What the worker posts back has
// the first number too and is told apart by its class.
const QEvent::Type entryEventType = QEvent::Type(1000);
const QEvent::Type setupEventType = QEvent::Type(1001);
const QEvent::Type videoDataEventType = QEvent::Type(1002);
const QEvent::Type videoDataSeekEventType = QEvent::Type(1003);
const QEvent::Type shutdownEventType = QEvent::Type(1004);

/// Sends an entry.
class EntryEvent : public QEvent
{
public:
    /// @p receiver, which may be null, lives in the main thread and outlives the worker. It gets
    /// what the server confirms: of a video its bytes, of the end of a test an AnswerEvent with
    /// @p wait.
    EntryEvent(const TestResult::Entry &sent, QObject *receiver, int waitNumber = 0)
        : QEvent(entryEventType)
        , entry(sent)
        , object(receiver)
        , wait(waitNumber)
    {
        // Copies of a file info share a cache without a lock.
        const QString file = sent.vpFile.filePath();
        entry.vpFile = file.isEmpty() ? TestResult::Entry::noFile() : QFileInfo(file);
    }

    TestResult::Entry entry;
    QObject *object;
    int wait;
};

/// Opens the connection.
class SetupEvent : public QEvent
{
public:
    explicit SetupEvent(const UploadAddress &target)
        : QEvent(setupEventType)
        , address(target)
    {
    }

    UploadAddress address;
};

class VideoDataEvent : public QEvent
{
public:
    /// @p device is the receiver of what the server confirms of the data.
    VideoDataEvent(const QByteArray &name, const QByteArray &bytes, QObject *receiver)
        : QEvent(videoDataEventType)
        , fileName(name)
        , data(bytes)
        , device(receiver)
    {
    }

    QByteArray fileName;
    QByteArray data;
    QObject *device;
};

class VideoDataSeekEvent : public QEvent
{
public:
    VideoDataSeekEvent(const QByteArray &name, qint64 position)
        : QEvent(videoDataSeekEventType)
        , fileName(name)
        , offset(position)
    {
    }

    QByteArray fileName;
    qint64 offset;
};

/// Ends the upload.
class ShutdownEvent : public QEvent
{
public:
    ShutdownEvent()
        : QEvent(shutdownEventType)
    {
    }
};

/// Ends the wait for the answer to an entry: it came, or none can come any more.
class AnswerEvent : public QEvent
{
public:
    explicit AnswerEvent(int waitNumber)
        : QEvent(entryEventType)
        , wait(waitNumber)
    {
    }

    /// The number that the entry came with: an answer may be later than the wait for it.
    int wait;
};

/// Tells a video device what the server has confirmed.
class BytesWritten : public QEvent
{
public:
    explicit BytesWritten(int byteCount)
        : QEvent(entryEventType)
        , count(byteCount)
    {
    }

    int count;
};

} // namespace Morvex
