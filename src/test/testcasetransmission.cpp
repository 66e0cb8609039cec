#include "test/testcasetransmission.h"

#include "test/child/rawvideostream.h"
#include "test/testreportgenerator.h"

#include <QtEndian>

#include <cstdio>
#include <limits>

namespace Morvex {
namespace {

// As long as a path may be, and more.
const quint32 maxNameLength = 64 * 1024;

} // namespace

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
    if (m_isAborted)
        return;
    m_buffer += m_socket->readAll();
    int position = 0;
    if (!m_output) {
        position = openOutput();
        if (!m_output)
            return;
    }
    if (m_chunkLeft > 0) {
        position += writePart(position);
        m_buffer.remove(0, position);
        position = 0;
    }
    readChunks(position);
}

// The number of bytes that the opening takes; the output is set when they were there.
int TestCaseTransmission::openOutput()
{
    if (m_buffer.size() < videoNameLengthSize)
        return 0;
    const auto length = qFromBigEndian<quint32>(m_buffer.constData());
    if (length > maxNameLength) {
        abort(QStringLiteral("its name is longer than any path"));
        return 0;
    }
    if (static_cast<quint32>(m_buffer.size() - videoNameLengthSize) < length)
        return 0;
    const QByteArray name = m_buffer.mid(videoNameLengthSize, static_cast<int>(length));
    const QIODeviceResult result = m_generator->videoOutput(QString::fromUtf8(name.constData()));
    if (!result.error.isEmpty()) {
        abort(result.error);
        return 0;
    }
    m_output = result.device;
    m_output->setParent(this);
    connect(m_output, &QIODevice::bytesWritten, this, &TestCaseTransmission::onBytesWritten);
    return videoNameLengthSize + static_cast<int>(length);
}

void TestCaseTransmission::abort(const QString &error)
{
    std::fprintf(stderr, "Could not start the stream: %s\n", qUtf8Printable(error));
    m_isAborted = true;
    m_buffer.clear();
    deleteLater();
}

// An incomplete chunk header leaves the buffer as it is, with the chunks before it.
void TestCaseTransmission::readChunks(int position)
{
    while (position < m_buffer.size()) {
        if (m_buffer.size() - position < videoChunkHeaderSize)
            return;
        const char *chunk = m_buffer.constData() + position;
        const auto type = qFromBigEndian<quint32>(chunk);
        const auto value = qFromBigEndian<quint64>(chunk + sizeof type);
        if (type == static_cast<quint32>(VideoChunk::Seek)) {
            if (value <= static_cast<quint64>(std::numeric_limits<qint64>::max()))
                m_output->seek(static_cast<qint64>(value));
            position += videoChunkHeaderSize;
        } else if (type == static_cast<quint32>(VideoChunk::Data)) {
            position += videoChunkHeaderSize;
            m_chunkLeft = value;
            m_chunks.push_back(static_cast<qint64>(value));
            position += writePart(position);
        } else {
            std::fputs("Video stream error: unknown chunk type\n", stderr);
            m_socket->close();
            break;
        }
    }
    m_buffer.remove(0, position);
}

// Writes what is there of the data chunk, however long it says it is, and returns its size.
int TestCaseTransmission::writePart(int position)
{
    const auto available = static_cast<quint64>(m_buffer.size() - position);
    const auto size = static_cast<int>(qMin(available, m_chunkLeft));
    const qint64 written = m_output->write(m_buffer.constData() + position, size);
    // An output that takes nothing now confirms all later; what it refuses it never does.
    if (written != 0)
        m_chunks.back() -= size - qMax(qint64(0), written);
    m_chunkLeft -= static_cast<quint64>(size);
    onBytesWritten(qMax(qint64(0), written));
    return size;
}

// Acknowledges chunks as a whole, in however many parts they came.

void TestCaseTransmission::onBytesWritten(qint64 bytes)
{
    m_confirmed += bytes;
    while (!m_chunks.empty() && m_confirmed >= m_chunks.front() &&
           (m_chunks.size() > 1 || m_chunkLeft == 0)) {
        const qint64 size = m_chunks.front();
        m_chunks.pop_front();
        m_confirmed -= size;
        if (size > 0)
            acknowledge(size);
    }
}

void TestCaseTransmission::acknowledge(qint64 bytes)
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
