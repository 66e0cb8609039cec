#pragma once

#include "morvex_export.h"

#include <QString>
#include <QStringList>

#include <memory>

class QProcessEnvironment;

namespace Morvex {

class WatchedProcess;

/// A home, a temporary directory and a session bus for the applications of a test case, which share
/// them. All of it is removed with this object or after the end of this process, once the
/// applications have ended.
class MORVEX_EXPORT ApplicationHome
{
public:
    struct Options
    {
        /// The directory of the installation.
        QString prefix;
        /// A directory whose files the home has at first; empty for none.
        QString seed;
        /// Variables of this process that stay as they are; with DBUS_SESSION_BUS_ADDRESS among
        /// them no bus is started.
        QStringList keptVariables;
    };

    explicit ApplicationHome(const Options &options);
    ~ApplicationHome();

    ApplicationHome(const ApplicationHome &) = delete;
    ApplicationHome &operator=(const ApplicationHome &) = delete;

    /// Why there is none; empty when there is.
    QString error() const { return m_error; }

    QString homeDirectory() const { return m_directory + QLatin1String("/home"); }
    QString temporaryDirectory() const { return m_directory + QLatin1String("/tmp"); }
    QString runtimeDirectory() const { return m_directory + QLatin1String("/run"); }
    /// Nobody listens there when no program for a session bus is installed.
    QString busAddress() const;

    /// Gives a process this home, settings and a session of its own, so that it meets neither
    /// another run nor the user's own instance. The variables in @p kept stay as they are.
    void makePrivate(QProcessEnvironment *environment, const QStringList &kept) const;

    /// For a socket, different at each call.
    QString newSocketPath();

    /// A descriptor that keeps all this as long as a process has it open.
    int lifeline() const;

private:
    [[nodiscard]] QString fill(const Options &options);
    void waitForBus();

    QString m_directory;
    QString m_error;
    int m_socketCount = 0;
    std::unique_ptr<WatchedProcess> m_keeper;
};

} // namespace Morvex
