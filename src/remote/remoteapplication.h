#pragma once

#include "morvex_export.h"

#include <QDeadlineTimer>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Morvex {

class ApplicationHome;
class RemoteContext;
class RemoteInspector;

/// A program, unchanged, as the application under test: started in a process of its own, with the
/// agent brought into it. It ends with this object and with this process, with all the processes
/// that it has started.
class MORVEX_EXPORT RemoteApplication
{
public:
    struct Start
    {
        /// The path of the program, or its name if it is found by PATH, and its arguments.
        QStringList command;
        /// Empty for that of this process.
        QString workingDirectory;
        /// Further variables of its environment, as NAME=VALUE.
        QStringList variables;
        /// Variables of this process that are the application's too, though it would have a value
        /// of its own for them: it has a home, settings and a session of its own.
        QStringList keptVariables;
        /// The directory of the installation, with the agent in its lib/agent.
        QString prefix;
        /// What the application shares with others of its test case; one of its own without it.
        std::shared_ptr<ApplicationHome> home;
        /// File names of the programs whose processes may be contexts; empty for all.
        QStringList whiteList;
        /// Whether not only the first process that can be tested is a context, but each.
        bool hooksSubProcesses = false;
        /// How long to wait for it, in milliseconds.
        int timeout = 20000;
        /// How long a call may wait for an answer, in milliseconds, beyond what it takes by itself.
        int bound = 60000;
        /// When the test case is ended if it has not come to its end: what hangs is to be reported
        /// before.
        QDeadlineTimer deadline{QDeadlineTimer::Forever};
        /// Called again and again while this thread waits for the application, now and later. It
        /// must not use the application. May be empty.
        std::function<void()> idle;
        /// Asked again and again during the start, which fails once it is true. May be empty.
        std::function<bool()> isCancelled;
        /// Called when a call gets no answer though the application runs, or its event loop doesn't
        /// begin to, with the stack of the application or what else is known; that is empty when
        /// nothing is. May be empty.
        std::function<void(const QString &)> hangs;
    };

    /// Waits until the application's event loop runs. Null on failure; @p error then says why.
    static std::unique_ptr<RemoteApplication> start(const Start &start, QString *error);
    /// Ends it if that has not been done.
    ~RemoteApplication();

    RemoteApplication(const RemoteApplication &) = delete;
    RemoteApplication &operator=(const RemoteApplication &) = delete;

    /// Those that can be used, or could be before they ended, in the order in which they came.
    QList<std::shared_ptr<RemoteContext>> contexts();

    /// Makes a further process, which is no context by itself, one: that of an executable with
    /// this file name. Null when there is none at the moment, or its event loop doesn't run before
    /// the deadline.
    std::shared_ptr<RemoteContext> attach(const QString &name, const QDeadlineTimer &deadline);

    /// Asks the first process to end and ends all that are left. Returns how the first one has
    /// crashed by that: "the application has crashed by signal 6 (Aborted)"; empty when it has not.
    QString end();

    /// That of the first context. Belongs to this object. Objects that it has handed out may
    /// outlive both.
    RemoteInspector *inspector();
    qint64 processId() const;
    /// Whether the process of the first context has not ended, as far as is known.
    bool isRunning();

    /// The end, up to 1 MiB, of what the application and those that it started have written; also
    /// after its end.
    QString standardOutput() const;
    QString standardError() const;

private:
    RemoteApplication();

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Morvex
