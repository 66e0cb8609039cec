#pragma once

#include <QVariant>

class QAction;
class QMenu;
class QWidget;

namespace Morvex {

/// How a script names an entry of a menu that is open.
struct MenuPath
{
    /// The menu bar, the button, or the menu that was opened otherwise.
    QWidget *owner = nullptr;
    /// Empty for the owner itself: a button that its tool bar shows in a menu.
    QVariantList item;
};

/// @p open is a menu that a script has open before, if any.
MenuPath menuPathOf(QWidget *menu, QAction *action, const QMenu *open = nullptr);

/// That of the entry, or the button, that opens the menu; the menu itself when there is none.
MenuPath menuPathTo(QMenu *menu, const QMenu *open);

/// The first of the menus that were opened from each other to the end of this one; null when a
/// menu bar or a button has opened it.
QMenu *firstMenuOf(QMenu *menu);

/// Whether a place of the screen is within a menu that is open.
bool isInOpenMenu(const QPoint &globalPlace);

} // namespace Morvex
