#pragma once

#include "qtbackend/mouseevents.h"

#include <QVariant>

#include <memory>
#include <optional>

class QAction;

namespace Morvex {

class InputSequence;
class Item;

/// Where a gesture of the mouse begins or ends: a widget, an action in a menu that is open, or an
/// item of a widget.
class MouseTarget
{
public:
    struct Place
    {
        QObject *object = nullptr;
        /// Empty for the object itself.
        QVariantList item;
        /// From the upper left corner of what is meant; without it where that reacts.
        std::optional<QPoint> place;
    };

    /// Null, with an error text, when a user can't do anything to it now.
    static std::shared_ptr<MouseTarget> make(const Place &place, QString *error);

    /// It is where a drag ends: a place may be outside of an item that the drag moves.
    void setEnd() { m_isBeyond = m_place.has_value(); }

    /// Adds what has to be done before the mouse can get there: activates the window, opens menus
    /// and lists, scrolls.
    void reveal(InputSequence &input);

    /// Not valid, with an error text, when something is in the way.
    MouseSpot spot(QString *error);

    /// How much further something has to be dragged this way to take the place of the item. Null
    /// where the way to the spot is enough.
    QPoint wayBeyond(const QPoint &way) const;

private:
    QWidget *widget() const;
    MouseSpot sceneSpot(QString *error) const;
    QPoint placeIn(QWidget *widget, QString *error) const;

    QPointer<QObject> m_object;
    std::shared_ptr<Item> m_item;
    std::optional<QPoint> m_place;
    bool m_isBeyond = false;
};

/// Clicks at the place in the widget with the left button. False when the widget would not get the
/// click.
bool clickWhereFree(QWidget *widget, const QPoint &place);

/// Clicks on an item of Qt Quick. Returns an error text, empty on success.
[[nodiscard]] QString clickSceneItem(QObject *item);

/// The open menu that shows the action; null when there is none.
QWidget *openMenuOf(const QAction *action);

} // namespace Morvex
