#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QIODevice>
#include <QLocalSocket>
#include <QObject>

#include <deque>

namespace Morvex {

class TestReportGenerator;

/// The parent's end of a video stream: writes what a child's RawStreamOutput sends to the video
/// output of a report generator, and acknowledges it.
class MORVEX_EXPORT TestCaseTransmission : public QObject
{
    Q_OBJECT

public:
    /// Takes ownership of @p socket; @p generator has to outlive this object.
    TestCaseTransmission(TestReportGenerator *generator, QLocalSocket *socket);

    /// Reads what the child, which has ended, still has on its way; waits for its end of the
    /// connection at most @p timeoutMs.
    void finish(int timeoutMs);

public Q_SLOTS:
    void onReadyRead();
    void onBytesWritten(qint64 bytes);
    void onStateChanged(QLocalSocket::LocalSocketState state);

private:
    int openOutput();
    void readChunks(int position);
    void abort(const QString &error);
    int writePart(int position);
    void acknowledge(qint64 bytes);

    TestReportGenerator *m_generator;
    QIODevice *m_output = nullptr;
    QLocalSocket *m_socket;
    QByteArray m_buffer;
    // Of the data chunk that is being read.
    quint64 m_chunkLeft = 0;
    // The chunks that are to be acknowledged, as far as the output takes them.
    std::deque<qint64> m_chunks;
    qint64 m_confirmed = 0;
    bool m_isAborted = false;
};

} // namespace Morvex
