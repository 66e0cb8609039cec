#pragma once

#include <QPointer>
#include <QVariant>
#include <QWidget>

#include <vector>

namespace Morvex {

class ActionReport;

/// What the user changes with the wheel of the mouse, from the events before they are delivered. To
/// scroll is nothing that a script would repeat.
class WheelActions
{
public:
    explicit WheelActions(ActionReport &report)
        : m_report(report)
    {
    }

    /// In a window, before it goes on to a widget.
    void begin();
    /// In a widget, and in those around it as long as they don't take it.
    void turn(QWidget *widget);

    /// Looks what has become of it.
    void settle();

private:
    struct Turned
    {
        QPointer<QWidget> widget;
        QString name;
        QVariant value;
    };

    void report(const Turned &turned);

    ActionReport &m_report;
    std::vector<Turned> m_turned;
    bool m_isTurning = false;
    // What was reported last.
    QPointer<QWidget> m_changed;
    QString m_name;
    int m_number = 0;
};

} // namespace Morvex
