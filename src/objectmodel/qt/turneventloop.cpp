#include "objectmodel/qt/turneventloop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QTimer>

namespace Morvex {

void turnEventLoop(int milliseconds)
{
    if (milliseconds > 0) {
        QEventLoop loop;
        QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
        loop.exec();
    }
    QCoreApplication::processEvents();
    // Outside of a running event loop nobody else would delete them.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace Morvex
