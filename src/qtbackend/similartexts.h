#pragma once

#include <QString>

namespace Morvex {

/// Whether a reader could have meant the one by the other: but for case, "&" and blanks the same,
/// one within the other, or a few letters apart. False for empty texts.
bool areSimilar(const QString &a, const QString &b);

} // namespace Morvex
