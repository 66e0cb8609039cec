#pragma once

#include "qtbackend/scenechanges.h"

#include <QElapsedTimer>
#include <QHash>
#include <QPointer>
#include <QStringList>

class QEvent;

namespace Morvex {

/// Which widgets and items have become visible or enabled only some time after what the user did,
/// so that a script has to wait for that.
class LateChanges
{
public:
    /// The user does something.
    void begin() { m_isSettled = false; }
    /// What the user did is an action: what follows it at once, it does in a script as well.
    void noteAction() { m_sinceAction.start(); }
    /// The application has handled what the user did last.
    void settle();

    /// An event of any object.
    void note(QObject *receiver, const QEvent &event);

    /// The properties of the object that have become true so, since they were asked for.
    QStringList take(const QObject *object);

private:
    struct Change
    {
        QPointer<QObject> object;
        bool isShown = false;
        bool isEnabled = false;
    };

    QHash<const QObject *, Change> m_changes;
    SceneChanges m_scenes;
    // At first the application has not handled its start.
    bool m_isSettled = false;
    // Invalid at first.
    QElapsedTimer m_sinceAction;
};

} // namespace Morvex
