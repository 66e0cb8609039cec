#include "qtbackend/areascroll.h"

#include <algorithm>
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

AreaScroll::Known &AreaScroll::known(const QScrollBar *bar)
{
    const auto isGone = [](const Known &each) { return !each.bar; };
    m_known.erase(std::remove_if(m_known.begin(), m_known.end(), isGone), m_known.end());
    const auto found = std::find_if(m_known.begin(), m_known.end(),
                                    [bar](const Known &each) { return each.bar == bar; });
    if (found != m_known.end())
        return *found;
    m_known.push_back({bar, bar->value()});
    return m_known.back();
}

} // namespace Morvex
