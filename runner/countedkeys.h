#pragma once

#include <QString>

namespace Morvex {

/// Keys as scripts type them, where a key that is repeated often in a row is written once with its
/// count, "<Right*12>".
QString countedKeys(const QString &keys);

} // namespace Morvex
