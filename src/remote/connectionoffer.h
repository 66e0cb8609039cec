#pragma once

#include "morvex_export.h"
#include "remote/protocol/messagechannel.h"

#include <QString>

#include <memory>

namespace Morvex {

/// A socket in a directory of this user alone, by which an application that was started for it can
/// connect to this process.
class MORVEX_EXPORT ConnectionOffer
{
public:
    struct Caller
    {
        /// Null when nobody came, or none that may.
        std::unique_ptr<MessageChannel> channel;
        qint64 processId = 0;
        /// The path of its program.
        QString executable;
        /// What was wrong with one that came; empty when nothing was.
        QString error;
    };

    /// For a socket of that path, which has to be short.
    explicit ConnectionOffer(const QString &socketPath);
    ~ConnectionOffer();

    ConnectionOffer(const ConnectionOffer &) = delete;
    ConnectionOffer &operator=(const ConnectionOffer &) = delete;

    /// Makes the socket. Returns an error text, empty on success.
    [[nodiscard]] QString listen();

    QString socketPath() const { return m_path; }
    /// What a caller has to know, as text.
    QByteArray token() const { return m_token; }

    /// Waits for a caller for so many milliseconds.
    Caller waitForCaller(int timeout);

private:
    QString m_path;
    QByteArray m_token;
    int m_descriptor = -1;
};

} // namespace Morvex
