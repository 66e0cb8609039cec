#pragma once

#include <QPoint>

class QWidget;

namespace Morvex {

/// Scrolls the areas around the widget, as a user would, until the place in it can be seen.
void scrollIntoSight(QWidget *widget, const QPoint &place);

/// Whether nothing around the widget cuts the place off.
bool isInSight(const QWidget *widget, QPoint place);

} // namespace Morvex
