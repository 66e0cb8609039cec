#include "qtbackend/scenetable.h"

#include "qtbackend/itempath.h"
#include "qtbackend/scenecell.h"
#include "qtbackend/sceneview.h"

#include <algorithm>

namespace Morvex {
namespace {

// More than anybody scrolls through, and few enough to be looked at in one turn.
const int maxSteps = 2000;
// So that no cell is passed over.
const qreal partOfSight = 0.8;

bool isMeant(const QObject *delegate, const ItemSelector &selector)
{
    if (!selector.isCell)
        return shownTextOf(delegate) == selector.path;
    const SceneCell cell = sceneCellOf(delegate);
    return cell.row == selector.row && cell.column == selector.column;
}

// Items that a table keeps for later are still where they were. Their rows end with the store.
void dropKeptItems(QObject *table)
{
    const char property[] = "reuseItems";
    if (!table->property(property).toBool())
        return;
    table->setProperty(property, false);
    table->setProperty(property, true);
}

void moveTo(QObject *table, qreal x, qreal y)
{
    table->setProperty("contentX", x);
    table->setProperty("contentY", y);
    settleSceneTable(table);
}

qreal realOf(const QObject *table, const char *property)
{
    return table->property(property).toReal();
}

} // namespace

void settleSceneTable(QObject *table)
{
    QMetaObject::invokeMethod(table, "forceLayout");
    dropKeptItems(table);
}

QObject *sceneCellAt(QObject *table, const ItemSelector &selector)
{
    const QObjectList delegates = delegatesOf(table);
    const auto found =
        std::find_if(delegates.begin(), delegates.end(),
                     [&selector](const QObject *delegate) { return isMeant(delegate, selector); });
    return found == delegates.end() ? nullptr : *found;
}

QObject *showSceneCell(QObject *table, const ItemSelector &selector)
{
    dropKeptItems(table);
    if (QObject *cell = sceneCellAt(table, selector))
        return cell;
    const qreal x = realOf(table, "contentX");
    const qreal y = realOf(table, "contentY");
    const qreal right = std::max(1.0, realOf(table, "width") * partOfSight);
    const qreal down = std::max(1.0, realOf(table, "height") * partOfSight);
    int steps = 0;
    for (qreal below = 0; below < realOf(table, "contentHeight"); below += down) {
        for (qreal beside = 0; beside < realOf(table, "contentWidth"); beside += right) {
            moveTo(table, beside, below);
            QObject *cell = sceneCellAt(table, selector);
            if (cell)
                return cell;
            if (++steps > maxSteps)
                break;
        }
        if (steps > maxSteps)
            break;
    }
    moveTo(table, x, y);
    return nullptr;
}

} // namespace Morvex
