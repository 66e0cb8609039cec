#pragma once

#include "morvex_export.h"

#include <QImage>

namespace Morvex {

/// Whether applications started by this process have their windows on an X display.
MORVEX_EXPORT bool hasDisplay();

/// Why the X display of this process can't be connected to; empty when it can. One that does not
/// answer takes up to five seconds.
MORVEX_EXPORT QString whyNoDisplay();

/// What the X display of this process shows, whatever the applications on it do. Null with an error
/// text when that can't be found out, which a display that does not answer delays by up to five
/// seconds.
MORVEX_EXPORT QImage pictureOfDisplay(QString *error);

} // namespace Morvex
