#include "qtbackend/areascroll.h"

#include "qtbackend/actionreport.h"

#include <iterator>
#include <utility>

namespace Morvex {

void AreaScroll::noteShown(const QObject *object)
{
    const auto *area = qobject_cast<const QAbstractScrollArea *>(object);
    if (!area)
        return;
    known(area->horizontalScrollBar());
    known(area->verticalScrollBar());
}

QList<QScrollBar *> AreaScroll::takeMoved(const QAbstractScrollArea *area)
{
    QList<QScrollBar *> moved;
    for (QScrollBar *bar : {area->horizontalScrollBar(), area->verticalScrollBar()}) {
        if (std::exchange(known(bar).value, bar->value()) != bar->value())
            moved += bar;
    }
    return moved;
}

void AreaScroll::report(const QList<QScrollBar *> &moved, ActionReport &report)
{
    for (const QScrollBar *bar : moved)
        report.add(QStringLiteral("set"), bar,
                   {{QStringLiteral("property"), QStringLiteral("value")},
                    {QStringLiteral("value"), bar->value()}});
}

AreaScroll::Known &AreaScroll::known(const QScrollBar *bar)
{
    if (m_known.size() >= m_cleanUpAt && !m_known.contains(bar))
        forgetDeleted();
    Known &known = m_known[bar];
    // The address of one that no longer exists may be that of another one by now.
    if (known.bar != bar)
        known = {bar, bar->value()};
    return known;
}

void AreaScroll::forgetDeleted()
{
    for (auto it = m_known.begin(); it != m_known.end();)
        it = it->bar ? std::next(it) : m_known.erase(it);
    // So that the cost of looking at all of them is shared by many.
    m_cleanUpAt = qMax(int(minCleanUp), 2 * m_known.size());
}

} // namespace Morvex
