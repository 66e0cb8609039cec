#include "test/rawreportgenerator.h"

#include "shared/system/trace.h"
#include "test/child/rawentrystream.h"
#include "test/child/rawvideostream.h"

#include <QLocalSocket>
#include <QtEndian>

#include <cstdio>

namespace Morvex {
namespace {

const int timeoutMs = 30000;
const int datagramCapacity = 1024;

struct Connection
{
    std::unique_ptr<QLocalSocket> socket;
    QString error;
};

Connection connectTo(const QString &socketName)
{
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(socketName, QIODevice::ReadWrite);
    if (socket->waitForConnected(timeoutMs))
        return {std::move(socket), QString()};
    return {nullptr, QStringLiteral("Could not connect to local report socket '%1': %2")
                         .arg(socketName, socket->errorString())};
}

} // namespace

RawReportGenerator::RawReportGenerator(const QString &socketName,
                                       std::unique_ptr<QLocalSocket> socket)
    : TestReportGenerator(IsLeftOpen)
    , m_socketName(socketName)
    , m_socket(std::move(socket))
{
    m_datagram.reserve(datagramCapacity);
}

TestReportGenerator::Result RawReportGenerator::create(const QString &socketName)
{
    Connection connection = connectTo(socketName);
    if (!connection.socket)
        return {nullptr, connection.error};
    return {new RawReportGenerator(socketName, std::move(connection.socket)), QString()};
}

RawReportGenerator::~RawReportGenerator()
{
    m_socket->disconnectFromServer();
    if (m_socket->state() != QLocalSocket::UnconnectedState &&
        !m_socket->waitForDisconnected(timeoutMs))
        std::fputs("RawReportGenerator: Failed to disconnect from testsuite morvexrunner\n",
                   stderr);
}

void RawReportGenerator::generateSummary()
{
    qCDebug(traceReportGenerator) << "No summary for raw reports";
}

QIODeviceResult RawReportGenerator::videoOutput(const QString &name)
{
    Connection connection = connectTo(m_socketName);
    if (!connection.socket)
        return {nullptr, connection.error};
    return {new RawStreamOutput(name, connection.socket.release()), QString()};
}

void RawReportGenerator::doHandleEntry(const TestResult::Entry &entry)
{
    if (m_socket->state() != QLocalSocket::ConnectedState) {
        m_hasLostEntries = true;
        qCDebug(traceReportGenerator)
            << "cannot write on unconnected socket, state:" << m_socket->state();
        return;
    }
    if (send(entry))
        return;
    m_hasLostEntries = true;
    std::fputs("RawReportGenerator: failed to send testresult entry to testsuite morvexrunner\n",
               stderr);
    m_socket->disconnectFromServer();
}

bool RawReportGenerator::send(const TestResult::Entry &entry)
{
    encodeEntry(entry, m_datagram);
    if (m_socket->write(m_datagram.constData(), m_datagram.size()) != m_datagram.size())
        return false;
    // One wait may end with a part of a large entry still in this process.
    while (m_socket->bytesToWrite() > 0) {
        if (!m_socket->waitForBytesWritten(timeoutMs))
            return false;
    }
    return true;
}

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
