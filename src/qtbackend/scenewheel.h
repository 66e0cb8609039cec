#pragma once

#include <QPointer>
#include <QString>

class QWheelEvent;

namespace Morvex {

class ActionReport;

/// The wheel over items of Qt Quick that do more with it than to scroll. What comes one after the
/// other is one action.
class SceneWheel
{
public:
    explicit SceneWheel(ActionReport &report)
        : m_report(report)
    {
    }

    void turn(QObject *root, const QWheelEvent &event);

private:
    ActionReport &m_report;
    QPointer<QObject> m_item;
    QString m_name;
    Qt::KeyboardModifiers m_modifiers;
    double m_steps = 0;
    int m_number = 0;
};

} // namespace Morvex
