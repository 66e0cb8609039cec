#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

class QLocalSocket;

namespace Morvex {

/// Write-only device whose data goes to a file of the parent runner. A write returns 0 at all
/// times: bytesWritten alone tells what the parent has written.
class MORVEX_EXPORT RawStreamOutput : public QIODevice
{
    Q_OBJECT

public:
    /// Takes ownership of @p socket, which is connected.
    RawStreamOutput(const QString &streamName, QLocalSocket *socket);

    bool isSequential() const override { return false; }
    bool seek(qint64 position) override;

protected:
    qint64 readData(char *data, qint64 maxSize) override;
    qint64 writeData(const char *data, qint64 size) override;

private Q_SLOTS:
    void onReadyRead();

private:
    void sendChunkHeader(quint32 type, quint64 value);

    QLocalSocket *m_socket;
    QByteArray m_acknowledgements;
};

} // namespace Morvex
