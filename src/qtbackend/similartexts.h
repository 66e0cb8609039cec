#pragma once

#include <QString>
#include <QStringList>

namespace Morvex {

/// Whether a reader could have meant the one by the other: but for case, "&" and blanks the same,
/// one within the other, or a few letters apart. False for empty texts.
bool areSimilar(const QString &a, const QString &b);

/// The one of @p candidates that @p text was most probably meant for; empty when none is similar.
QString mostSimilar(const QString &text, const QStringList &candidates);

} // namespace Morvex
