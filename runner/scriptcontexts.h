#pragma once

#include <QObject>
#include <QString>
#include <QVariantList>

namespace Morvex {

class Applications;

/// The contexts of the applications of a test case, for scripts, by their numbers.
class ScriptContexts : public QObject
{
    Q_OBJECT

public:
    /// Not owned.
    explicit ScriptContexts(Applications *applications);

    Q_INVOKABLE QVariantList running() const;
    /// Negative when there is none.
    Q_INVOKABLE int current() const;
    /// False when the application of the context has been stopped.
    Q_INVOKABLE bool setCurrent(int context) const;
    /// One that the script was not given yet, as soon as there is one. Negative after the time, in
    /// milliseconds.
    Q_INVOKABLE int waitForLaunch(int timeout) const;

    Q_INVOKABLE QString name(int context) const;
    Q_INVOKABLE double processId(int context) const;
    Q_INVOKABLE bool isRunning(int context) const;
    /// Whether it gives no answer within this many milliseconds.
    Q_INVOKABLE bool isFrozen(int context, int timeout) const;
    /// The end of what its application has printed.
    Q_INVOKABLE QString standardOutput(int context) const;
    Q_INVOKABLE QString standardError(int context) const;

private:
    Applications *m_applications;
};

} // namespace Morvex
