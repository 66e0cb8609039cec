#pragma once

#include <QVector>

class QString;

namespace Morvex {

/// The places in a field at which cursor keys stop: they jump over what its input mask says to be
/// no input. From 0 to the number of places, ascending.
QVector<int> cursorStops(const QString &inputMask);

} // namespace Morvex
