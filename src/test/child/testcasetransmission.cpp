#include "test/child/testcasetransmission.h"

#include "test/rawvideostream.h"
#include "test/testreportgenerator.h"

#include <QtEndian>

#include <cstdio>
#include <limits>

namespace Morvex {

TestCaseTransmission::TestCaseTransmission(TestReportGenerator *generator, QLocalSocket *socket)
    : m_generator(generator)
    , m_socket(socket)
{
    socket->setParent(this);
}

void TestCaseTransmission::finish(int timeoutMs)
{
    if (m_socket->state() != QLocalSocket::UnconnectedState)
        m_socket->waitForDisconnected(timeoutMs);
    onReadyRead();
}

void TestCaseTransmission::onReadyRead()
{
    m_buffer += m_socket->readAll();
    int position = 0;
    if (!m_output) {
        position = openOutput();
        if (!m_output)
            return;
    }
    readChunks(position);
}

// The number of bytes that the opening takes; the output is set when they were there.
int TestCaseTransmission::openOutput()
{
    if (m_buffer.size() < videoNameLengthSize)
        return 0;
    const auto length = qFromBigEndian<quint32>(m_buffer.constData());
    if (static_cast<quint32>(m_buffer.size() - videoNameLengthSize) < length)
        return 0;
    const QByteArray name = m_buffer.mid(videoNameLengthSize, static_cast<int>(length));
    const QIODeviceResult result = m_generator->videoOutput(QString::fromUtf8(name.constData()));
    if (!result.error.isEmpty()) {
        std::fprintf(stderr, "Could not start the stream: %s\n", qUtf8Printable(result.error));
        deleteLater();
        return 0;
    }
    m_output = result.device;
    m_output->setParent(this);
    connect(m_output, &QIODevice::bytesWritten, this, &TestCaseTransmission::onBytesWritten);
    return videoNameLengthSize + static_cast<int>(length);
}

// An incomplete chunk header leaves the buffer as it is, with the chunks in front of it.
void TestCaseTransmission::readChunks(int position)
{
    while (position < m_buffer.size()) {
        const int available = m_buffer.size() - position;
        if (available < videoChunkHeaderSize)
            return;
        const char *chunk = m_buffer.constData() + position;
        const auto type = qFromBigEndian<quint32>(chunk);
        const auto value = qFromBigEndian<quint64>(chunk + sizeof type);
        if (type == static_cast<quint32>(VideoChunk::Seek)) {
            if (value <= static_cast<quint64>(std::numeric_limits<qint64>::max()))
                m_output->seek(static_cast<qint64>(value));
            position += videoChunkHeaderSize;
        } else if (type == static_cast<quint32>(VideoChunk::Data)) {
            if (value > static_cast<quint64>(available - videoChunkHeaderSize))
                break;
            writeData(chunk + videoChunkHeaderSize, static_cast<qint64>(value));
            position += videoChunkHeaderSize + static_cast<int>(value);
        } else {
            std::fputs("Video stream error: unknown chunk type\n", stderr);
            m_socket->close();
            break;
        }
    }
    m_buffer.remove(0, position);
}

void TestCaseTransmission::writeData(const char *data, qint64 size)
{
    const qint64 written = m_output->write(data, size);
    if (written > 0)
        onBytesWritten(written);
}

void TestCaseTransmission::onBytesWritten(qint64 bytes)
{
    char acknowledgement[videoAcknowledgementSize];
    qToBigEndian(bytes, acknowledgement);
    m_socket->write(acknowledgement, sizeof acknowledgement);
}

void TestCaseTransmission::onStateChanged(QLocalSocket::LocalSocketState state)
{
    if (state == QLocalSocket::UnconnectedState)
        deleteLater();
}

} // namespace Morvex
