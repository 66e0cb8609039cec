#include "test/output/multioutputdevice.h"

#include "test/openreportfile.h"

#include <algorithm>
#include <cstdio>

namespace Morvex {

MultiOutputDevice::MultiOutputDevice(const QList<QIODevice *> &devices)
{
    for (QIODevice *device : devices) {
        device->setParent(this);
        m_written.insert(device, 0);
        connect(device, &QIODevice::bytesWritten, this, &MultiOutputDevice::deviceDataWritten);
    }
    open(QIODevice::WriteOnly);
}

bool MultiOutputDevice::seek(qint64 position)
{
    bool allMoved = true;
    for (auto device = m_written.keyBegin(); device != m_written.keyEnd(); ++device)
        allMoved = (*device)->seek(position) && allMoved;
    return QIODevice::seek(position) && allMoved;
}

qint64 MultiOutputDevice::readData(char *, qint64)
{
    return -1;
}

qint64 MultiOutputDevice::writeData(const char *data, qint64 size)
{
    const QList<QIODevice *> devices = m_written.keys();
    for (QIODevice *device : devices) {
        const qint64 written = device->write(data, size);
        if (written < 0)
            dropFailedDevice(device);
        else
            m_written[device] += written;
    }
    return m_written.isEmpty() ? 0 : flushDataWritten();
}

void MultiOutputDevice::dropFailedDevice(QIODevice *device)
{
    std::fputs(qUtf8Printable(
                   QStringLiteral("Error writing output file: %1\n").arg(device->errorString())),
               stderr);
    noteIncompleteReport();
    m_written.remove(device);
    delete device;
}

qint64 MultiOutputDevice::flushDataWritten()
{
    const qint64 reported = *std::min_element(m_written.cbegin(), m_written.cend());
    if (reported > 0) {
        for (qint64 &written : m_written)
            written -= reported;
    }
    return reported;
}

void MultiOutputDevice::deviceDataWritten(qint64 bytes)
{
    auto *device = static_cast<QIODevice *>(sender());
    m_written[device] += bytes;
    Q_EMIT bytesWritten(flushDataWritten());
}

} // namespace Morvex
