#pragma once

#include <QVariant>

namespace Morvex {

/// Of an action that an application has reported. An empty text when it has none.
inline QString textOf(const QVariantMap &action, const char *key)
{
    return action.value(QLatin1String(key)).toString();
}

/// 0 when it has none.
inline int numberOf(const QVariantMap &action, const char *key)
{
    return action.value(QLatin1String(key)).toInt();
}

inline int contextOf(const QVariantMap &action)
{
    return numberOf(action, "context");
}

/// Whether an application was started then.
inline bool isStart(const QVariantMap &action)
{
    return textOf(action, "what") == QLatin1String("start");
}

} // namespace Morvex
