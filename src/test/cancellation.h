#pragma once

#include "morvex_export.h"

#include <QObject>

#include <atomic>
#include <sys/types.h>

class QSocketNotifier;

namespace Morvex {

/// Asks a run to end: the running attempt is ended, nothing is started after it, and the log is
/// closed. One object serves one run.
class MORVEX_EXPORT Cancellation : public QObject
{
    Q_OBJECT

public:
    Cancellation();
    ~Cancellation() override;

    /// May be called from a signal handler and from any thread.
    void request() noexcept;
    bool isRequested() const noexcept { return m_requested; }

    /// Kills the process group of the running attempt at once, if there is one. May be called from
    /// a signal handler.
    void killRunningAttempt() const noexcept;

    /// 0 when no attempt is running.
    void setRunningAttempt(pid_t processGroup) noexcept { m_processGroup = processGroup; }

Q_SIGNALS:
    /// In the event loop of the thread that made this object.
    void requested();

private:
    std::atomic<bool> m_requested{false};
    std::atomic<pid_t> m_processGroup{0};
    int m_wakeUp = -1;
    QSocketNotifier *m_notifier = nullptr;
};

} // namespace Morvex
