#pragma once

#include "morvex_export.h"

#include <QIODevice>
#include <QList>
#include <QMap>

namespace Morvex {

/// Write-only device over several others. It confirms (bytesWritten) what all of them have taken;
/// a device that fails is reported on standard error and left out from then on.
class MORVEX_EXPORT MultiOutputDevice : public QIODevice
{
    Q_OBJECT

public:
    /// Takes ownership of @p devices, which are open for writing.
    explicit MultiOutputDevice(const QList<QIODevice *> &devices);

    bool isSequential() const override { return false; }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;

    /// The bytes that all devices have taken since the last report, not those of this call alone.
    qint64 writeData(const char *data, qint64 size) override;

private Q_SLOTS:
    void deviceDataWritten(qint64 bytes);

private:
    qint64 flushDataWritten();
    void dropFailedDevice(QIODevice *device);

    // Bytes that a device has confirmed and that were not reported yet.
    QMap<QIODevice *, qint64> m_written;
};

} // namespace Morvex
