#include "test/upload/videooutput.h"

#include "test/upload/handover.h"
#include "test/upload/quillbaseprivate.h"
#include "test/upload/uploadevents.h"

#include <QCoreApplication>

namespace Morvex {

VideoRelay::VideoRelay(QIODevice *target, QObject *parent)
    : QObject(parent)
    , m_target(target)
{
}

void VideoRelay::customEvent(QEvent *event)
{
    noteArrival(event);
    if (m_target)
        QCoreApplication::sendEvent(m_target, event);
}

VideoOutput::VideoOutput(QuillbasePrivate *upload, const QByteArray &fileName)
    : m_upload(upload)
    , m_fileName(fileName)
    , m_relay(new VideoRelay(this, upload))
{
    open(QIODevice::WriteOnly);
}

bool VideoOutput::seek(qint64 position)
{
    if (!m_upload || !m_upload->isTakingEvents())
        return false;
    m_upload->post(new VideoDataSeekEvent(m_fileName, position));
    return m_upload->waitForWakeUp();
}

qint64 VideoOutput::readData(char *, qint64)
{
    return -1;
}

qint64 VideoOutput::writeData(const char *data, qint64 size)
{
    if (!m_upload || !m_upload->isTakingEvents())
        return 0;
    m_upload->post(
        new VideoDataEvent(m_fileName, QByteArray(data, static_cast<int>(size)), m_relay));
    m_upload->waitForWakeUp();
    return 0;
}

void VideoOutput::customEvent(QEvent *event)
{
    if (const auto *written = dynamic_cast<BytesWritten *>(event))
        Q_EMIT bytesWritten(written->count);
}

} // namespace Morvex
