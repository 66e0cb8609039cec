#include "qtbackend/droptarget.h"

#include "qtbackend/itemselectors.h"

#include <QAbstractItemView>

namespace Morvex {
namespace {

// How near to its edge an item is no longer what something is dropped on, as the toolkit has it.
int edgeOf(const QRect &item)
{
    return qBound(2, qRound(item.height() / 5.5), 12);
}

// Above or below an item, what is dropped becomes a neighbour of it.
void addEdge(QAbstractItemView *view, const QPoint &place, RecordedTarget *target)
{
    QModelIndex index = view->indexAt(place);
    QRect item = view->visualRect(index);
    const bool isTaken = index.flags() & Qt::ItemIsDropEnabled;
    const int edge = isTaken ? edgeOf(item) : item.height() / 2;
    bool isAbove = place.y() - item.top() < edge;
    const bool isBelow = !isAbove && item.bottom() - place.y() < edge + (isTaken ? 0 : 1);
    const QModelIndex next = index.sibling(index.row() + 1, index.column());
    if (isBelow && next.isValid() && view->visualRect(next).top() > item.top()) {
        target->item = selectorOf(view, next);
        item = view->visualRect(next);
        isAbove = true;
    }
    if (isAbove)
        target->place = QPoint(qMin(10, item.width() / 2), 1);
    else if (isBelow)
        target->place = QPoint(qMin(10, item.width() / 2), item.height() - 2);
}

} // namespace

RecordedTarget dropTarget(QWidget *widget, const QPoint &place, bool isData)
{
    RecordedTarget target = recordedTarget(widget, place, Qt::LeftButton);
    auto *view = qobject_cast<QAbstractItemView *>(target.object.data());
    if (target.kind == RecordedTarget::Cursor)
        target.place = place;
    if (view && isData && !target.item.isEmpty())
        addEdge(view, place, &target);
    if (target.object || !isData)
        return target;
    QWidget *taking = widget;
    while (taking && !taking->acceptDrops())
        taking = taking->isWindow() ? nullptr : taking->parentWidget();
    if (!taking)
        return {};
    target.object = ownerOf(taking);
    if (!isMiddleFree(target.object))
        target.place = taking->mapFromGlobal(widget->mapToGlobal(place));
    return target;
}

} // namespace Morvex
