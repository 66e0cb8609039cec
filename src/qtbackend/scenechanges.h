#pragma once

#include <QSet>
#include <QStringList>

class QObject;

namespace Morvex {

/// Which items of Qt Quick have become visible or enabled only some time after what the user did.
/// They say so to nobody else, so that all are looked at.
class SceneChanges
{
public:
    /// The application has handled what the user did last.
    void settle();

    /// The properties of the item that have become true since.
    QStringList of(const QObject *item) const;

private:
    void add(const QObject *item);

    // Never followed, as they may no longer exist.
    QSet<const QObject *> m_shown;
    QSet<const QObject *> m_usable;
    bool m_isSettled = false;
};

} // namespace Morvex
