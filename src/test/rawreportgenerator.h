#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QByteArray>

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

    /// Whether an entry could not be sent: the parent's log lacks it and all behind it.
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

} // namespace Morvex
