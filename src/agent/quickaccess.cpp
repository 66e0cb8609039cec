#include "agent/quickreceiver.h"
#include "qtbackend/sceneaccess.h"

#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickTextDocument>
#include <QQuickWindow>

namespace Morvex {
namespace {

const QQuickItem *toItem(const QObject *object)
{
    return qobject_cast<const QQuickItem *>(object);
}

QRect rectOf(const QQuickItem &item)
{
    return item.mapRectToScene(QRectF(0, 0, item.width(), item.height())).toAlignedRect();
}

// Moves the content of an area so that the place in it can be seen.
void scroll(QQuickItem *area, const QQuickItem &item)
{
    const QRectF place = item.mapRectToItem(area, QRectF(0, 0, item.width(), item.height()));
    const struct
    {
        const char *property;
        qreal start;
        qreal end;
        qreal size;
    } directions[] = {{"contentX", place.left(), place.right(), area->width()},
                      {"contentY", place.top(), place.bottom(), area->height()}};
    for (const auto &direction : directions) {
        const qreal now = area->property(direction.property).toReal();
        if (direction.start < 0)
            area->setProperty(direction.property, now + direction.start);
        else if (direction.end > direction.size)
            area->setProperty(direction.property, now + direction.end - direction.size);
    }
}

// A combo box keeps the focus to itself when it gets it otherwise than by keys.
QQuickItem *textPartOf(QQuickItem *item)
{
    const bool isEdited = item->inherits("QQuickComboBox") && item->property("editable").toBool();
    auto *text = isEdited ? item->property("contentItem").value<QQuickItem *>() : nullptr;
    return text ? text : item;
}

class QuickAccess : public SceneAccess
{
public:
    bool isItem(const QObject *object) const override { return toItem(object); }

    QObject *rootOf(QObject *window) const override
    {
        const auto *quickWindow = qobject_cast<QQuickWindow *>(window);
        return quickWindow ? quickWindow->contentItem() : nullptr;
    }

    QObjectList childrenOf(const QObject *item) const override
    {
        QObjectList children;
        for (QQuickItem *child : toItem(item)->childItems())
            children += child;
        return children;
    }

    QObject *parentOf(const QObject *item) const override { return toItem(item)->parentItem(); }
    QWindow *windowOf(const QObject *item) const override { return toItem(item)->window(); }

    QString idOf(const QObject *object) const override
    {
        const QQmlContext *context = QQmlEngine::contextForObject(object);
        return context ? context->nameForObject(const_cast<QObject *>(object)) : QString();
    }

    QVariant contextValueOf(const QObject *item, const QString &name) const override
    {
        const QQmlContext *context = QQmlEngine::contextForObject(item);
        return context ? context->contextProperty(name) : QVariant();
    }

    bool isShown(const QObject *item) const override
    {
        return toItem(item)->isVisible() && toItem(item)->window();
    }

    bool isUsable(const QObject *item) const override { return toItem(item)->isEnabled(); }
    QRect placeOf(const QObject *item) const override { return rectOf(*toItem(item)); }

    QRect visiblePlaceOf(const QObject *item) const override
    {
        const QQuickItem *known = toItem(item);
        QRect place = rectOf(*known);
        if (known->window())
            place &= QRect(QPoint(), known->window()->size());
        for (const QQuickItem *around = known->parentItem(); around;
             around = around->parentItem()) {
            if (around->clip())
                place &= rectOf(*around);
        }
        return place;
    }

    QPoint toWindow(const QObject *item, const QPoint &place) const override
    {
        return toItem(item)->mapToScene(place).toPoint();
    }

    QPoint fromWindow(const QObject *item, const QPoint &place) const override
    {
        return toItem(item)->mapFromScene(place).toPoint();
    }

    bool isAt(const QObject *item, const QPoint &place) const override
    {
        return toItem(item)->contains(toItem(item)->mapFromScene(place));
    }

    QTextDocument *documentOf(const QObject *item) const override
    {
        auto *document = item->property("textDocument").value<QQuickTextDocument *>();
        return document ? document->textDocument() : nullptr;
    }

    QObject *grabberIn(const QWindow *window) const override
    {
        const auto *quickWindow = qobject_cast<const QQuickWindow *>(window);
        return quickWindow ? quickWindow->mouseGrabberItem() : nullptr;
    }

    QObject *focusIn(const QWindow *window) const override
    {
        const auto *quickWindow = qobject_cast<const QQuickWindow *>(window);
        return quickWindow ? quickWindow->activeFocusItem() : nullptr;
    }

    QObjectList popupsIn(const QObject *root) const override
    {
        QObjectList popups;
        for (const QQuickItem *layer : toItem(root)->childItems()) {
            if (layer->inherits("QQuickOverlay"))
                popups += popupsOf(*layer);
        }
        return popups;
    }

    QObject *drawnAt(QObject *root, const QPoint &place) const override
    {
        return drawnItem(static_cast<QQuickItem *>(root), place);
    }

    QObject *takerAt(QObject *root, const QPoint &place, Qt::MouseButton button) const override
    {
        return Morvex::takerAt(static_cast<QQuickItem *>(root), place, button);
    }

    QObject *clickedAt(QObject *root, const QPoint &place) const override
    {
        return clickedItem(static_cast<QQuickItem *>(root), place);
    }

    QObject *coverOf(const QObject *item, const QPoint &place) const override
    {
        const QQuickItem *known = toItem(item);
        return Morvex::coverOf(known->window()->contentItem(), known, place);
    }

    void scrollIntoSight(QObject *object) const override
    {
        auto *item = static_cast<QQuickItem *>(object);
        for (QQuickItem *around = item->parentItem(); around; around = around->parentItem()) {
            if (around->inherits("QQuickFlickable"))
                scroll(around, *item);
        }
    }

    void giveFocus(QObject *item) const override
    {
        textPartOf(static_cast<QQuickItem *>(item))->forceActiveFocus(Qt::OtherFocusReason);
    }

    QImage grab(const QObject *object) const override
    {
        const QQuickItem *item = toItem(object);
        auto *window = item
                           ? item->window()
                           : const_cast<QQuickWindow *>(qobject_cast<const QQuickWindow *>(object));
        const QImage image = window && window->isVisible() ? window->grabWindow() : QImage();
        if (image.isNull() || !item)
            return image;
        const qreal density = image.devicePixelRatio();
        const QRect place = visiblePlaceOf(object);
        return image.copy(QRect(place.topLeft() * density, place.size() * density));
    }
};

} // namespace
} // namespace Morvex

extern "C" Q_DECL_EXPORT Morvex::SceneAccess *morvexSceneAccess4()
{
    static auto *const access = new Morvex::QuickAccess;
    return access;
}
