#include "qtbackend/sceneview.h"

#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenecell.h"
#include "qtbackend/scenemodel.h"

#include <QHash>

#include <algorithm>

namespace Morvex {
namespace {

// More than anybody scrolls through, and few enough to be looked at in one turn.
const int maxLookedAt = 2000;

// A number of the toolkit: what is at the place of the current item is that.
const int strictlyEnforced = 2;

bool isPathView(const QObject *object)
{
    return object->inherits("QQuickPathView");
}

bool isView(const QObject *object)
{
    return object &&
           (object->inherits("QQuickItemView") || isPathView(object) || isSceneTable(object));
}

QObject *objectIn(const QObject *object, const char *property)
{
    return object ? object->property(property).value<QObject *>() : nullptr;
}

QObject *popupAround(const QObject *view)
{
    const SceneAccess &access = *SceneAccess::self();
    const QObject *item = view;
    while (item && !(item->parent() && item->parent()->inherits("QQuickPopup")))
        item = access.parentOf(item);
    return item ? item->parent() : nullptr;
}

bool isOfTumbler(const QObject *item)
{
    return item->inherits("QQuickTumbler") || item->inherits("QQuickTumblerView");
}

// What the user knows the view as; null for one whose items are known by themselves, such as tabs.
QObject *ownerOf(QObject *view)
{
    const QObject *around = SceneAccess::self()->parentOf(view);
    const QObject *popup = popupAround(view);
    if ((around && (around->inherits("QQuickContainer") || isOfTumbler(around))) ||
        (popup && popup->inherits("QQuickMenu")))
        return nullptr;
    QObject *box = objectIn(popup, "parent");
    return isSceneComboBox(box) ? box : view;
}

QVariant centre(const QObject *item, const char *start, const char *size)
{
    return item->property(start).toReal() + item->property(size).toReal() / 2;
}

// The item in which the items for rows are.
QObject *contentOf(QObject *view)
{
    return isPathView(view) ? view : objectIn(view, "contentItem");
}

// The view of which the item is that of a row; null for none.
QObject *viewOfRow(const QObject *item)
{
    const SceneAccess &access = *SceneAccess::self();
    QObject *content = access.parentOf(item);
    QObject *around = content ? access.parentOf(content) : nullptr;
    for (QObject *view : {content, around}) {
        if (isView(view) && contentOf(view) == content)
            return view;
    }
    return nullptr;
}

QVariantList cellSelectorOf(QObject *table, const QObject *delegate, bool isTextUnique)
{
    const SceneCell cell = sceneCellOf(delegate);
    const QString text = shownTextOf(delegate);
    if (isTextUnique && !isRepeatedInModel(table, cell.row, cell.column, text))
        return {text};
    return cell.row < 0 || cell.column < 0 ? QVariantList() : QVariantList{cell.row, cell.column};
}

QVariantList selectorOf(QObject *view, const QObject *delegate)
{
    const QString text = shownTextOf(delegate);
    const QObjectList all = delegatesOf(view);
    const auto same = std::count_if(all.begin(), all.end(), [&text](const QObject *other) {
        return shownTextOf(other) == text;
    });
    const bool isUnique = !text.isEmpty() && same == 1;
    if (isSceneTable(view))
        return cellSelectorOf(view, delegate, isUnique);
    const int row = sceneRowNumber(view, delegate);
    const int occurrence = isUnique ? occurrenceInModel(view, row, text) : 0;
    if (occurrence > 0 && row < maxLookedAt)
        return {text, QVariantMap{{QStringLiteral("occurrence"), occurrence}}};
    if (isUnique && row < maxLookedAt)
        return {text};
    return row < 0 ? QVariantList() : QVariantList{row, 0};
}

// In the order in which they are seen.
void sort(QObjectList *items)
{
    std::sort(items->begin(), items->end(), [](const QObject *a, const QObject *b) {
        const qreal above = a->property("y").toReal() - b->property("y").toReal();
        return above < 0 ||
               (qFuzzyIsNull(above) && a->property("x").toReal() < b->property("x").toReal());
    });
}

// The last row of those that there are.
int lastRow(QObject *view, const QObjectList &delegates)
{
    int last = -1;
    for (const QObject *delegate : delegates)
        last = std::max(last, sceneRowNumber(view, delegate));
    return last;
}

} // namespace

bool isSceneComboBox(const QObject *object)
{
    return object && object->inherits("QQuickComboBox");
}

QString sceneEntryText(QObject *box, int row)
{
    QString text;
    QMetaObject::invokeMethod(box, "textAt", Q_RETURN_ARG(QString, text), Q_ARG(int, row));
    return text;
}

QVariantList sceneEntrySelector(QObject *box, int row)
{
    const QString text = sceneEntryText(box, row);
    int occurrence = 1;
    for (int before = 0; before < row; ++before)
        occurrence += sceneEntryText(box, before) == text ? 1 : 0;
    if (text.isEmpty())
        return {row, 0};
    return occurrence == 1
               ? QVariantList{text}
               : QVariantList{text, QVariantMap{{QStringLiteral("occurrence"), occurrence}}};
}

bool isScenePaged(const QObject *item)
{
    if (item->inherits("QQuickSwipeView") || item->inherits("QQuickTumbler"))
        return true;
    const bool isFlicked = item->inherits("QQuickListView") || isPathView(item);
    return isFlicked && item->property("highlightRangeMode").toInt() == strictlyEnforced;
}

QObject *sceneViewOf(QObject *object)
{
    QObject *view =
        isSceneComboBox(object) ? objectIn(objectIn(object, "popup"), "contentItem") : object;
    return isView(view) ? view : nullptr;
}

SceneRow sceneRowOf(QObject *item)
{
    const SceneAccess &access = *SceneAccess::self();
    for (QObject *delegate = item; delegate; delegate = access.parentOf(delegate)) {
        QObject *view = viewOfRow(delegate);
        if (!view)
            continue;
        SceneRow row;
        row.owner = ownerOf(view);
        row.delegate = delegate;
        if (row.owner)
            row.selector = selectorOf(view, delegate);
        return row;
    }
    return {};
}

QString shownTextOf(const QObject *item)
{
    const SceneAccess &access = *SceneAccess::self();
    // What was typed may be a secret.
    if (item->inherits("QQuickTextInput") || item->inherits("QQuickTextEdit"))
        return {};
    const QString text = item->property("text").toString();
    if (!text.isEmpty())
        return text;
    const QObjectList children = access.childrenOf(item);
    for (const QObject *child : children) {
        const QString shown = access.isShown(child) ? shownTextOf(child) : QString();
        if (!shown.isEmpty())
            return shown;
    }
    return {};
}

QObjectList delegatesOf(QObject *view)
{
    const SceneAccess &access = *SceneAccess::self();
    const QObject *content = contentOf(view);
    // It is at the place of a row.
    const QObject *highlight = objectIn(view, "highlightItem");
    QObjectList delegates;
    if (!content)
        return delegates;
    for (QObject *child : access.childrenOf(content)) {
        // A view shows more than rows, such as a header.
        const bool isRow =
            isSceneTable(view) ? sceneCellOf(child).row >= 0 : sceneRowNumber(view, child) >= 0;
        if (isRow && access.isShown(child) && child != highlight)
            delegates += child;
    }
    sort(&delegates);
    return delegates;
}

int sceneRowNumber(QObject *view, const QObject *delegate)
{
    int row = -1;
    QMetaObject::invokeMethod(view, "indexAt", Q_RETURN_ARG(int, row),
                              Q_ARG(qreal, centre(delegate, "x", "width").toReal()),
                              Q_ARG(qreal, centre(delegate, "y", "height").toReal()));
    return row;
}

void showSceneRow(QObject *view, int row)
{
    const int contained = 4;
    QMetaObject::invokeMethod(view, "positionViewAtIndex", Q_ARG(int, row), Q_ARG(int, contained));
}

int findSceneRow(QObject *view, const QString &text, int occurrence)
{
    const int atStart = 0;
    const int count = std::min(view->property("count").toInt(), maxLookedAt);
    QHash<const char *, QVariant> position;
    for (const char *property : {"contentX", "contentY", "offset"})
        position[property] = view->property(property);
    int found = -1;
    int before = 0;
    for (int next = 0; next < count && found < 0;) {
        QMetaObject::invokeMethod(view, "positionViewAtIndex", Q_ARG(int, next),
                                  Q_ARG(int, atStart));
        const QObjectList delegates = delegatesOf(view);
        for (const QObject *delegate : delegates) {
            const int row = sceneRowNumber(view, delegate);
            if (row >= next && shownTextOf(delegate) == text && ++before == occurrence)
                found = row;
        }
        next = std::max(next, lastRow(view, delegates)) + 1;
    }
    for (auto it = position.cbegin(); it != position.cend(); ++it)
        view->setProperty(it.key(), it.value());
    return found;
}

} // namespace Morvex
