#include "runner/windowsystem.h"

#include <QApplication>

namespace Morvex {
namespace {

QtMessageHandler previousHandler = nullptr;

// What the toolkit says about a machine without a desktop in each test case, and no tester can
// change.
const char *const knownMessages[] = {
    "QStandardPaths: XDG_RUNTIME_DIR not set",
    "This plugin does not support ",
};

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    for (const char *known : knownMessages) {
        if (message.startsWith(QLatin1String(known)))
            return;
    }
    previousHandler(type, context, message);
}

void setPlatform()
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return;
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "wayland;xcb;offscreen");
    else
        qputenv("QT_QPA_PLATFORM",
                qEnvironmentVariableIsEmpty("DISPLAY") ? "offscreen" : "xcb;offscreen");
}

} // namespace

std::unique_ptr<QCoreApplication> makeWindowApplication(int &argc, char **argv)
{
    setPlatform();
    previousHandler = qInstallMessageHandler(handleMessage);
    auto application = std::make_unique<QApplication>(argc, argv);
    // The end of the application under test is not that of the script.
    QApplication::setQuitOnLastWindowClosed(false);
    return application;
}

} // namespace Morvex
