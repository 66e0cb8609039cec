#pragma once

#include "shared/richimage.h"

#include <QString>

class QObject;

namespace Morvex {

/// A picture of a widget as it is now, hidden ones included. Null for what is no widget.
QImage grabWidget(QObject *object);

/// The same once @p delay, in milliseconds, is over, with the place of its pixels on the screen.
/// Null on failure; @p error then has a text.
Screenshot grabScreenshot(QObject *object, int delay, QString *error);

/// All visible windows on the screens of the application.
Screenshot grabDesktop();

} // namespace Morvex
