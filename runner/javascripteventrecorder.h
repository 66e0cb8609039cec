#pragma once

#include "test/eventrecorder.h"

#include <QStringList>

namespace Morvex {

/// Prints recorded events as calls of the script API. An event that scripts have no call for
/// becomes a comment, so that whoever reads the script sees what is missing.
class JavaScriptEventRecorder : public EventRecorder
{
public:
    using EventRecorder::EventRecorder;

    /// The statements so far, a line each.
    QStringList lines() const { return m_lines; }

    void recordEvent(const EventData &event) override;
    QString recordSnooze(int timeoutMs) override;
    /// Empty unless the time is longer than find waits by itself.
    QString recordObjectWait(const QString &objectName, int timeoutMs) override;
    QString recordItemWait(const QString &objectName, const QString &item, int timeoutMs) override;
    QString recordCellWait(const QString &objectName, int row, int column, int timeoutMs) override;

private:
    QString statementFor(const EventData &event, const QString &objectName);
    QString waitFor(const QString &objectName, const EventData &event);
    // Empty for an event that is of no object.
    QString expressionFor(const QString &realName);
    void append(const QString &statement);

    QStringList m_lines;
};

} // namespace Morvex
