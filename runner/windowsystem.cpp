#include "runner/windowsystem.h"

#include <QApplication>

#include <algorithm>
#include <iterator>
#include <utility>

namespace Morvex {
namespace {

// Left alone by a call of exit, as one on the stack would be.
QCoreApplication *application = nullptr;
int *argumentCount = nullptr;
char **arguments = nullptr;
std::function<void()> windowSystemCallback;
QtMessageHandler previousHandler = nullptr;

// What the toolkit says about a machine without a desktop in each test case, and no tester can
// change: whole messages, since the application may say something alike.
const char *const knownMessages[] = {
    "This plugin does not support propagateSizeHints()",
    "This plugin does not support raise()",
    "This plugin does not support lower()",
    "This plugin does not support setting window opacity",
    "This plugin does not support setting window masks",
    "This plugin does not support grabbing the keyboard",
    "This plugin does not support grabbing the mouse",
};

bool isKnown(const QString &message)
{
    // It goes on with a path.
    if (message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        return true;
    return std::any_of(std::begin(knownMessages), std::end(knownMessages),
                       [&message](const char *known) { return message == QLatin1String(known); });
}

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!isKnown(message))
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

ApplicationObject::ApplicationObject(int &argc, char **argv)
{
    argumentCount = &argc;
    arguments = argv;
    application = new QCoreApplication(argc, argv);
}

ApplicationObject::~ApplicationObject()
{
    delete application;
    application = nullptr;
}

void startWindowSystem()
{
    if (qobject_cast<QApplication *>(application))
        return;
    setPlatform();
    previousHandler = qInstallMessageHandler(handleMessage);
    delete application;
    application = new QApplication(*argumentCount, arguments);
    // The end of the application under test is not that of the script.
    QApplication::setQuitOnLastWindowClosed(false);
    if (windowSystemCallback)
        windowSystemCallback();
}

void setWindowSystemCallback(std::function<void()> callback)
{
    windowSystemCallback = std::move(callback);
}

} // namespace Morvex
