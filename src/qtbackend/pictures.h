#pragma once

#include "shared/richimage.h"

#include <QString>
#include <QVariant>

#include <vector>

class QObject;
class QWidget;

namespace Morvex {

/// A picture of a widget as it is now, hidden ones included. Null for what is not a widget.
QImage grabWidget(QObject *object);

/// The same with a pixel for each unit of the widget's coordinates, whatever the screen, and as it
/// looks without the focus, a text cursor or the mouse above it, in the active window.
QImage paintWidget(QWidget *widget);

/// The picture of grabWidget once @p delay, in milliseconds, is over, with the place of its pixels
/// on the screen. Null on failure; @p error then has a text.
Screenshot grabScreenshot(QObject *object, int delay, QString *error);

/// A picture as Screenshot::fromVariant takes it, with its pixels as they are in memory; invalid
/// for a null one.
QVariant rawPicture(const Screenshot &picture);

/// The screen. Where the platform has no picture of it, those of @p objects that are visible
/// windows, each above those before it, menus and other popups above all.
Screenshot grabDesktop(const std::vector<QObject *> &objects);

} // namespace Morvex
