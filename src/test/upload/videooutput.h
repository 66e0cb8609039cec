#pragma once

#include <QByteArray>
#include <QIODevice>
#include <QPointer>

namespace Morvex {

class QuillbasePrivate;

/// Hands on to a video device, if it still lives, what the worker tells of it: the device may be
/// deleted while its data is on the way. Lives as long as the upload.
class VideoRelay : public QObject
{
public:
    VideoRelay(QIODevice *target, QObject *parent);

protected:
    void customEvent(QEvent *event) override;

private:
    QPointer<QIODevice> m_target;
};

/// Sends a video as it is written. May outlive the upload, and writes to nowhere then.
class VideoOutput : public QIODevice
{
public:
    VideoOutput(QuillbasePrivate *upload, const QByteArray &fileName);

    /// The receiver for what the server confirms. Owned by the upload.
    QObject *relay() const { return m_relay; }

    bool isSequential() const override { return false; }
    /// Moves only the place on the server.
    bool seek(qint64 position) override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    /// Always 0: bytesWritten tells the number, once the server has confirmed it.
    qint64 writeData(const char *data, qint64 size) override;
    void customEvent(QEvent *event) override;

private:
    QPointer<QuillbasePrivate> m_upload;
    QByteArray m_fileName;
    QPointer<VideoRelay> m_relay;
};

} // namespace Morvex
