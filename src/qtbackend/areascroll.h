#pragma once

#include <QAbstractScrollArea>
#include <QHash>
#include <QPointer>
#include <QScrollBar>

namespace Morvex {

class ActionReport;

/// How far areas are scrolled, which a script has to know before it clicks at a place of one.
class AreaScroll
{
public:
    /// As it is when it is first shown, an area is in the script, too.
    void noteShown(const QObject *object);

    /// The bars of the area that have other values than when this was asked last.
    QList<QScrollBar *> takeMoved(const QAbstractScrollArea *area);

    static void report(const QList<QScrollBar *> &moved, ActionReport &report);

private:
    struct Known
    {
        QPointer<const QScrollBar> bar;
        int value = 0;
    };

    Known &known(const QScrollBar *bar);
    void forgetDeleted();

    static constexpr int minCleanUp = 1000;

    QHash<const QScrollBar *, Known> m_known;
    int m_cleanUpAt = minCleanUp;
};

} // namespace Morvex
