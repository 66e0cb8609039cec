#include "agent/platformmessages.h"

#include <QString>

#include <algorithm>
#include <iterator>

namespace Morvex {
namespace {

QtMessageHandler previousHandler = nullptr;

// Whole messages, since the application may say something alike.
const char *const knownMessages[] = {
    "This plugin does not support propagateSizeHints()",
    "This plugin does not support raise()",
    "This plugin does not support lower()",
    "This plugin does not support setting window opacity",
    "This plugin does not support setting window masks",
    "This plugin does not support grabbing the keyboard",
    "This plugin does not support grabbing the mouse",
};

void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const bool isKnown =
        std::any_of(std::begin(knownMessages), std::end(knownMessages),
                    [&message](const char *known) { return message == QLatin1String(known); });
    if (!isKnown)
        previousHandler(type, context, message);
}

} // namespace

void hideMessagesOfPlatform()
{
    const QtMessageHandler before = qInstallMessageHandler(handleMessage);
    if (before != handleMessage)
        previousHandler = before;
}

} // namespace Morvex
