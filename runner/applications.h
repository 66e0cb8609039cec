#pragma once

#include "objectmodel/object.h"
#include "remote/remoteapplication.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Morvex {

class ApplicationHome;
class RemoteContext;
class RemoteInspector;

/// The applications of a test case, and their processes that can be tested, the contexts. A context
/// is known by its number, which is never used again. Names are looked up in the current one.
class Applications
{
public:
    /// What holds for all of them.
    struct Settings
    {
        /// The application of the suite: its name and arguments; empty when it names none.
        QStringList suiteApplication;
        /// Of a program that starts those given to it, with arguments that come first; may be
        /// empty.
        QStringList launcher;
        /// Empty for that of this process; "@app" for the directory of the program.
        QString workingDirectory;
        /// A directory with what their home has at first; may be empty.
        QString homeSeed;
        /// As those of RemoteApplication::Start.
        QStringList whiteList;
        bool hooksSubProcesses = false;
        int bound = 60000;
        /// When the test case is ended if it has not come to its end.
        QDeadlineTimer deadline{QDeadlineTimer::Forever};
        /// As that of RemoteApplication::Start; one that serves SIGTERM when it is empty.
        std::function<void()> idle = nullptr;
        /// As that of RemoteApplication::Start.
        std::function<bool()> isCancelled = nullptr;
    };

    /// How one has ended without being asked to.
    struct Death
    {
        int context = -1;
        QString text;
        /// Whether a call has failed because of it.
        bool isMet = false;
        bool hasDumpedCore = false;
    };

    /// What one start may have of its own.
    struct Options
    {
        /// Empty for that of the settings.
        QString workingDirectory;
        /// Further variables, as NAME=VALUE.
        QStringList variables;
        /// In milliseconds.
        int timeout = 20000;
    };

    /// @p searchDirs are where programs named by scripts are looked up before PATH.
    Applications(const QStringList &searchDirs, const Settings &settings);
    ~Applications();

    Applications(const Applications &) = delete;
    Applications &operator=(const Applications &) = delete;

    /// @p hangs is called with what is known of where an application that gives no answer is.
    void setHangs(const std::function<void(const QString &)> &hangs) { m_hangs = hangs; }

    /// @p crashes is called with how an application has crashed when it was asked to end.
    void setCrashesAtEnd(const std::function<void(const QString &)> &crashes)
    {
        m_crashesAtEnd = crashes;
    }

    /// Makes the context of what was started the current one, and returns it; negative on failure.
    /// An empty command is that of the suite.
    int start(const QStringList &command, const Options &options, QString *error);
    /// With a program that starts the application, whatever the settings say; the first of its
    /// processes that can be tested is the context.
    int startLauncher(const QStringList &command, const Options &options, QString *error);
    /// A further process that is no context by itself, by the file name of its program.
    int attach(const QString &name, int timeout, QString *error);

    /// Waits for a context that the script was not given yet, which becomes the current one.
    /// Negative when none comes.
    int waitForLaunch(int timeout);

    /// Those whose application was not stopped.
    QList<int> contexts() const;
    /// Those that run.
    QList<int> running();
    /// Negative before the first start, and after the application of the current one was stopped.
    int current() const { return m_current; }
    /// False when there is none of that number.
    bool setCurrent(int id);
    /// After it there is no current one, if it was this.
    void leave(int id);
    bool wasStarted() const { return m_lastId > 0; }

    /// Stops the application that the context is of, with all of its contexts.
    void stop(int id);
    void stopAll();

    /// Null when there is none of that number.
    std::shared_ptr<RemoteContext> context(int id) const;
    RemoteApplication *applicationOf(int id) const;
    /// What the application has printed, also after it was stopped.
    QString standardOutput(int id) const;
    QString standardError(int id) const;

    /// That of the current context, which is made the installed one; null without one.
    std::shared_ptr<RemoteInspector> inspector();
    /// Why usage is not counted in the current context; empty when it is, or is not wanted.
    QString countError();

    /// That of the application that the object is of, whether it is the current one or not; null
    /// for none.
    std::shared_ptr<RemoteInspector> inspectorOf(const SharedPtr<Object> &object);

    /// Those that are not settled.
    QList<Death> deaths();
    void settleDeath(int context);

private:
    struct Entry
    {
        int id = -1;
        std::shared_ptr<RemoteApplication> application;
        std::shared_ptr<RemoteContext> context;
        // In which usage is counted, if it is to be.
        std::weak_ptr<RemoteInspector> counted;
        QString countError;
        bool isKnown = false;
        bool isDeathSettled = false;
        // After the end of the application.
        QString standardOutput;
        QString standardError;
    };

    int launch(const QStringList &command, const QString &program, const Options &options,
               QString *error);
    QString pathOf(const QString &name, QString *error) const;
    void update();
    int handOut(Entry &entry);
    Entry *entryOf(int id);
    const Entry *entryOf(int id) const;

    QStringList m_searchDirs;
    Settings m_settings;
    std::function<void(const QString &)> m_hangs;
    std::function<void(const QString &)> m_crashesAtEnd;
    std::shared_ptr<ApplicationHome> m_home;
    QList<std::shared_ptr<RemoteApplication>> m_applications;
    QList<Entry> m_entries;
    // What is installed has to live.
    std::shared_ptr<RemoteInspector> m_installed;
    int m_lastId = 0;
    int m_current = -1;
};

} // namespace Morvex
