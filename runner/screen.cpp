#include "runner/screen.h"

#include <QByteArray>
#include <QtGlobal>

namespace Morvex {

bool hasScreen()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    return platform != "offscreen" && platform != "minimal" &&
           (!qEnvironmentVariableIsEmpty("DISPLAY") ||
            !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"));
}

} // namespace Morvex
