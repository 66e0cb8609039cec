#pragma once

#include "morvex_qtbackend_export.h"

#include <QImage>
#include <QObjectList>
#include <QPoint>
#include <QRect>
#include <QString>
#include <QVariant>

class QTextDocument;
class QWindow;

namespace Morvex {

/// What there is to ask of the items of Qt Quick. A library of its own implements it, so that
/// programs without such items don't pay for it.
class SceneAccess
{
public:
    virtual ~SceneAccess() = default;

    /// Null as long as no library of Qt Quick is in the process. Looks again when the process has
    /// loaded another one.
    static SceneAccess *self();

    /// Where that library is; without it there are no items.
    MORVEX_QTBACKEND_EXPORT static void setLibraryDirectory(const QByteArray &directory);

    virtual bool isItem(const QObject *object) const = 0;
    /// The item of a window in which all others are; null for any other object.
    virtual QObject *rootOf(QObject *window) const = 0;
    /// The items that are directly in the item.
    virtual QObjectList childrenOf(const QObject *item) const = 0;
    virtual QObject *parentOf(const QObject *item) const = 0;
    /// Null for an item that is in none.
    virtual QWindow *windowOf(const QObject *item) const = 0;
    /// The name that the item's file gives it; empty without one.
    virtual QString idOf(const QObject *object) const = 0;

    /// What the file of the item knows under the name; not valid without one.
    virtual QVariant contextValueOf(const QObject *item, const QString &name) const = 0;

    /// Whatever becomes of its window.
    virtual bool isShown(const QObject *item) const = 0;
    virtual bool isUsable(const QObject *item) const = 0;
    /// In the window.
    virtual QRect placeOf(const QObject *item) const = 0;
    /// The part of that which no item around it cuts off.
    virtual QRect visiblePlaceOf(const QObject *item) const = 0;
    virtual QPoint toWindow(const QObject *item, const QPoint &place) const = 0;
    virtual QPoint fromWindow(const QObject *item, const QPoint &place) const = 0;
    /// Whether the place of the window is in the item.
    virtual bool isAt(const QObject *item, const QPoint &place) const = 0;

    /// Null for what edits no text of several lines.
    virtual QTextDocument *documentOf(const QObject *item) const = 0;

    /// The item that gets the mouse until the button is released; null for none.
    virtual QObject *grabberIn(const QWindow *window) const = 0;
    /// The item that gets the keys; null for none.
    virtual QObject *focusIn(const QWindow *window) const = 0;
    /// What is shown above all else, such as open menus: the objects that have it there.
    virtual QObjectList popupsIn(const QObject *root) const = 0;

    /// The item that a click at the place of the window is for; @p root has all of the window.
    virtual QObject *clickedAt(QObject *root, const QPoint &place) const = 0;
    /// The topmost item there that draws something; null for none.
    virtual QObject *drawnAt(QObject *root, const QPoint &place) const = 0;
    /// The item that gets a press of the button there first; null for none.
    virtual QObject *takerAt(QObject *root, const QPoint &place, Qt::MouseButton button) const = 0;
    /// The item that would take a click at the place of the window in place of @p item; null for
    /// none.
    virtual QObject *coverOf(const QObject *item, const QPoint &place) const = 0;

    // What a user does.
    virtual void scrollIntoSight(QObject *item) const = 0;
    virtual void giveFocus(QObject *item) const = 0;

    /// Null where the platform can't take one.
    virtual QImage grab(const QObject *itemOrWindow) const = 0;
};

/// The entry of that library. Its name changes with the interface: programs that link the agent may
/// have that of another version.
using SceneAccessFunction = SceneAccess *(*)();
inline constexpr char sceneAccessFunctionName[] = "morvexSceneAccess4";

} // namespace Morvex
