#pragma once

#include "morvex_export.h"
#include "remote/protocol/messagechannel.h"

#include <QElapsedTimer>
#include <QString>

#include <deque>
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

    /// Waits for a caller for this many milliseconds, or less when there is one that has not said
    /// who it is yet, which is not waited for.
    Caller waitForCaller(int timeout);

private:
    // Has not said who it is.
    struct Silent
    {
        std::unique_ptr<MessageChannel> channel;
        qint64 processId = 0;
        QElapsedTimer age;
    };

    bool waitForNews(int timeout) const;
    void acceptAll();
    Caller takeHello(Silent *silent, MessageChannel::Outcome *outcome) const;

    std::deque<Silent> m_silent;
    QString m_path;
    QByteArray m_token;
    int m_descriptor = -1;
};

} // namespace Morvex
