#pragma once

#include <QVariant>

namespace Morvex {

/// Sets a property. A user who can changes a value by a drag of the slider, or in a field that has
/// the focus; what the application does about that happens here, too. False for a value that the
/// property does not take.
bool setLikeUser(QObject *object, const QByteArray &property, const QVariant &value);

} // namespace Morvex
