#pragma once

#include "morvex_qtbackend_export.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>

#include <deque>
#include <functional>

namespace Morvex {

/// What a user does, one step in each turn of the event loop. When a step has opened a dialog that
/// runs a loop of its own, the next ones are done in that.
class MORVEX_QTBACKEND_EXPORT InputSequence : public QObject
{
    Q_OBJECT

public:
    /// Returns an error text, with which the sequence ends; empty on success.
    using Step = std::function<QString()>;
    using Condition = std::function<bool()>;

    void add(const Step &step);
    /// The next step waits until then, for this many milliseconds at most.
    void waitUntil(const Condition &condition, int milliseconds);

    bool isEmpty() const { return m_steps.empty(); }

    /// Whether the loop has turned after the last step, or in it.
    bool isDone() const { return m_isDone; }
    QString error() const { return m_error; }
    /// @p callback is called once, from the event loop.
    void setWhenDone(const std::function<void()> &callback) { m_whenDone = callback; }

protected:
    void timerEvent(QTimerEvent *event) override;

private:
    struct Entry
    {
        Step step;
        // Where it is set, the entry only waits.
        Condition condition;
        int timeout = 0;
    };

    void append(const Entry &entry);
    void schedule(int milliseconds);
    bool hasToWait(const Entry &entry);

    std::deque<Entry> m_steps;
    QElapsedTimer m_waiting;
    bool m_isScheduled = false;
    bool m_isDone = false;
    QString m_error;
    std::function<void()> m_whenDone;
};

} // namespace Morvex
