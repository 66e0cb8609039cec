#include "qtbackend/barmove.h"

#include "qtbackend/itemselectors.h"
#include "qtbackend/recordedtarget.h"

#include <QHeaderView>
#include <QTabBar>

namespace Morvex {
namespace {

// To find the name of each takes a look at all others.
const int maxItems = 200;

} // namespace

BarMove::BarMove(const RecordedTarget &target, const QWidget *pressed, const QPoint &globalPlace)
{
    if (target.kind != RecordedTarget::Click || !pressed)
        return;
    if (auto *header = qobject_cast<QHeaderView *>(target.object.data())) {
        if (!header->sectionsMovable() || header->count() > maxItems)
            return;
        m_bar = header;
        m_section = header->logicalIndexAt(header->viewport()->mapFromGlobal(globalPlace));
        m_from = place();
        for (int visual = 0; visual < header->count(); ++visual)
            m_items += selectorOf(header, header->logicalIndex(visual));
    } else if (auto *bar = qobject_cast<QTabBar *>(const_cast<QWidget *>(pressed))) {
        if (!bar->isMovable() || bar->count() > maxItems)
            return;
        m_bar = bar;
        m_from = bar->tabAt(bar->mapFromGlobal(globalPlace));
        for (int tab = 0; tab < bar->count(); ++tab)
            m_items += selectorOf(bar, tab);
    }
}

// A tab that is pressed is the current one.
int BarMove::place() const
{
    if (const auto *header = qobject_cast<const QHeaderView *>(m_bar.data()))
        return header->visualIndex(m_section);
    const auto *bar = qobject_cast<const QTabBar *>(m_bar.data());
    return bar ? bar->currentIndex() : -1;
}

QVariantList BarMove::movedTo() const
{
    const int to = isPossible() ? place() : -1;
    return to >= 0 && to != m_from ? m_items.value(to) : QVariantList();
}

} // namespace Morvex
