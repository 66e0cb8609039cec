#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QByteArray>
#include <QIODevice>
#include <QString>

#include <memory>

class QLocalSocket;

namespace Morvex {

/// Sends each entry to the parent runner, which listens on a local socket. Blocks until the entry
/// is on its way, so that nothing is lost when this process dies.
class MORVEX_EXPORT RawReportGenerator : public TestReportGenerator
{
public:
    static Result create(const QString &socketName);
    ~RawReportGenerator() override;

    void generateSummary() override;

    /// Whether an entry could not be sent: the parent's log lacks it and all after it.
    bool hasLostEntries() const { return m_hasLostEntries; }

    /// A device of type RawStreamOutput.
    QIODeviceResult videoOutput(const QString &name) override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    RawReportGenerator(const QString &socketName, std::unique_ptr<QLocalSocket> socket);

    bool send(const TestResult::Entry &entry);

    QString m_socketName;
    std::unique_ptr<QLocalSocket> m_socket;
    bool m_hasLostEntries = false;
    // Kept for its memory, some of which is reserved: without that it would be freed when emptied.
    QByteArray m_datagram;
};

/// Write-only device whose data goes to a file of the parent runner. A write returns 0 at all
/// times: bytesWritten alone says what the parent has written.
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
