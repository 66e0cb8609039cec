#include "runner/screen.h"

#include "test/verification/displaypicture.h"

#include <QByteArray>

namespace Morvex {

QString whyNoScreen()
{
    const QByteArray platform = qgetenv("QT_QPA_PLATFORM");
    const bool isNamed = platform != "offscreen" && platform != "minimal" &&
                         (!qEnvironmentVariableIsEmpty("DISPLAY") ||
                          !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"));
    if (!isNamed)
        return QStringLiteral("a display is needed");
    return hasDisplay() ? whyNoDisplay() : QString();
}

} // namespace Morvex
