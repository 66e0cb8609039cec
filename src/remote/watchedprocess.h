#pragma once

#include <QByteArray>
#include <QHash>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace Morvex {

/// A program with all its child processes, below a watcher that ends them when this object, or the
/// process that it is in, comes to its end, and then removes their directory.
class WatchedProcess
{
public:
    /// @p watcher is the path of the watcher, @p directory what it is to remove.
    WatchedProcess(const QString &watcher, const QString &directory, const QStringList &command,
                   const QString &workingDirectory, const QProcessEnvironment &environment);
    /// Ends all processes that are left.
    ~WatchedProcess();

    WatchedProcess(const WatchedProcess &) = delete;
    WatchedProcess &operator=(const WatchedProcess &) = delete;

    /// Why it could not be started; empty while that is not known or it was.
    QString error() const { return m_error; }

    /// Takes what the watcher has said, waiting for it up to so many milliseconds.
    void update(int timeout);

    /// Whether the program and all that it started have ended.
    bool hasEnded() const { return m_hasEnded; }

    /// How a process has ended: "ended with status 3", "ended by signal 15 (Terminated)", "crashed
    /// by signal 11 (Segmentation fault)". Empty while it runs, and for one that is no child of the
    /// watcher.
    QString endOf(qint64 processId) const { return m_ends.value(processId); }
    /// That of the program itself.
    QString endOfProgram() const { return endOf(m_program); }

private:
    void take(const QByteArray &line);
    void endWatcher();

    pid_t m_watcher = -1;
    int m_control = -1;
    qint64 m_program = 0;
    QString m_command;
    QString m_error;
    QByteArray m_unfinishedLine;
    QHash<qint64, QString> m_ends;
    bool m_hasEnded = false;
};

} // namespace Morvex
