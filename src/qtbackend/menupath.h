#pragma once

#include <QVariant>

class QAction;
class QWidget;

namespace Morvex {

/// How a script names an entry of a menu that is open.
struct MenuPath
{
    /// The menu bar, or the menu that was opened otherwise.
    QWidget *owner = nullptr;
    QVariantList item;
};

MenuPath menuPathOf(QWidget *menu, QAction *action);

} // namespace Morvex
