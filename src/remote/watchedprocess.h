#pragma once

#include "remote/protocol/outputring.h"

#include <QByteArray>
#include <QHash>
#include <QProcessEnvironment>
#include <QQueue>
#include <QSet>
#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace Morvex {

/// A program with all its child processes, below a watcher that ends them when this object, or the
/// process that it is in, comes to its end.
class WatchedProcess
{
public:
    struct Options
    {
        /// The path of the watcher.
        QString watcher;
        /// Made at first, and removed once all processes have ended; empty for none.
        QString directory;
        /// Empty for a directory alone.
        QStringList command;
        QString workingDirectory;
        QProcessEnvironment environment;
        /// A descriptor that the watcher keeps open until all processes have ended; negative for
        /// none.
        int lifeline = -1;
    };

    /// Nothing but the directory is made before allowStart.
    explicit WatchedProcess(const Options &options);
    /// Ends all processes that are left.
    ~WatchedProcess();

    WatchedProcess(const WatchedProcess &) = delete;
    WatchedProcess &operator=(const WatchedProcess &) = delete;

    void allowStart();

    /// Why it could not be started; empty while that is not known or it was.
    QString error() const { return m_error; }

    /// Takes what the watcher has said, waiting for it up to this many milliseconds.
    void update(int timeout);

    /// Takes all that the watcher knows by now, and what was written by now.
    void catchUp();

    /// Whether the program and all that it started have ended.
    bool hasEnded() const { return m_hasEnded; }

    /// Ends all processes that are left. False when somebody had killed the watcher, so that some
    /// may still be there.
    bool end();

    /// How a process has ended: "ended with status 3", "ended by signal 15 (Terminated)", "crashed
    /// by signal 11 (Segmentation fault)". Empty while it runs, and for one that is no child of the
    /// watcher. Of many only the latest are known, besides those that are kept.
    QString endOf(qint64 processId) const { return m_ends.value(processId).text; }
    /// Whether the system has kept its memory, or has given it to a program that collects it.
    bool hasDumpedCore(qint64 processId) const { return m_ends.value(processId).hasDumpedCore; }
    static bool isCrash(const QString &end) { return end.startsWith(QLatin1String("crashed")); }
    /// That of the program itself.
    QString endOfProgram() const { return endOf(m_program); }
    /// Whether the program was a shell, or behaves like one, whose command has crashed.
    bool hasCommandCrashed() const { return m_ends.value(m_program).isCrashOfCommand; }
    void keepEndOf(qint64 processId) { m_kept += processId; }

    qint64 watcherId() const { return m_watcher; }

    /// The last MiB of what the program and those that it started have written; also after its end.
    QByteArray standardOutput();
    QByteArray standardError();

    /// What holds up the end of the watcher for as long as a process has it open.
    int control() const { return m_control; }

private:
    struct End
    {
        QString text;
        bool hasDumpedCore = false;
        bool isCrashOfCommand = false;
    };

    void makeOutputMemory();
    void waitUntilReady();
    void take(const QByteArray &line);
    void addEnd(qint64 process, const End &end);
    bool endWatcher();

    pid_t m_watcher = -1;
    int m_control = -1;
    int m_outputDescriptor = -1;
    OutputMemory *m_output = nullptr;
    qint64 m_program = 0;
    QString m_command;
    QString m_directory;
    QString m_error;
    QByteArray m_unfinishedLine;
    QHash<qint64, End> m_ends;
    QQueue<qint64> m_order;
    QSet<qint64> m_kept;
    bool m_isReady = false;
    bool m_isDrained = false;
    bool m_isLost = false;
    bool m_hasEnded = false;
};

} // namespace Morvex
