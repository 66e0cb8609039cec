#include "test/child/rawstreamoutput.h"

#include "test/rawvideostream.h"

#include <QLocalSocket>
#include <QtEndian>

namespace Morvex {

RawStreamOutput::RawStreamOutput(const QString &streamName, QLocalSocket *socket)
    : m_socket(socket)
{
    socket->setParent(this);
    connect(socket, &QLocalSocket::readyRead, this, &RawStreamOutput::onReadyRead);
    const QByteArray name = streamName.toUtf8();
    char length[videoNameLengthSize];
    qToBigEndian(static_cast<quint32>(name.size()), length);
    socket->write(length, sizeof length);
    socket->write(name);
    setOpenMode(QIODevice::WriteOnly);
}

bool RawStreamOutput::seek(qint64 position)
{
    if (!QIODevice::seek(position))
        return false;
    sendChunkHeader(static_cast<quint32>(VideoChunk::Seek), static_cast<quint64>(position));
    return true;
}

qint64 RawStreamOutput::readData(char *, qint64)
{
    return -1;
}

qint64 RawStreamOutput::writeData(const char *data, qint64 size)
{
    sendChunkHeader(static_cast<quint32>(VideoChunk::Data), static_cast<quint64>(size));
    m_socket->write(data, size);
    return 0;
}

void RawStreamOutput::sendChunkHeader(quint32 type, quint64 value)
{
    char header[videoChunkHeaderSize];
    qToBigEndian(type, header);
    qToBigEndian(value, header + sizeof type);
    m_socket->write(header, sizeof header);
}

void RawStreamOutput::onReadyRead()
{
    m_acknowledgements += m_socket->readAll();
    // The last acknowledgement waits for the next one.
    while (m_acknowledgements.size() > videoAcknowledgementSize) {
        const auto written = qFromBigEndian<qint64>(m_acknowledgements.constData());
        Q_EMIT bytesWritten(written);
        m_acknowledgements.remove(0, videoAcknowledgementSize);
    }
}

} // namespace Morvex
