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
        /// What was wrong with one that came; empty when nothing was.
        QString error;
    };

    /// The socket is made in @p directory, whose path has to be short.
    explicit ConnectionOffer(const QString &directory);
    ~ConnectionOffer();

    ConnectionOffer(const ConnectionOffer &) = delete;
    ConnectionOffer &operator=(const ConnectionOffer &) = delete;

    /// Why there is no socket; empty when there is.
    QString error() const { return m_error; }
    QString socketPath() const { return m_path; }
    /// What a caller has to know, as text.
    QByteArray token() const { return m_token; }

    /// Waits for a caller for so many milliseconds.
    Caller waitForCaller(int timeout);

private:
    QString m_path;
    QString m_error;
    QByteArray m_token;
    int m_descriptor = -1;
};

} // namespace Morvex
