#include "agent/emptyclipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace Morvex {

void fillEmptyClipboard()
{
    if (QGuiApplication::platformName() == QLatin1String("offscreen") &&
        !QGuiApplication::clipboard()->mimeData())
        QGuiApplication::clipboard()->setMimeData(new QMimeData);
}

} // namespace Morvex
