#pragma once

#include "morvex_export.h"

#include <QString>

#include <functional>

namespace Morvex {

enum class DollarPair {
    Kept,
    /// "$$" stands for one "$", which begins no reference.
    IsOneDollar,
};

/// The characters that the replacements in one text may add.
const qint64 maxExpansionGrowth = 4 * 1024 * 1024;

/// Replaces each $(NAME) in @p text by what @p lookup gives for NAME; an empty replacement leaves
/// the reference as it is. References in a replacement are expanded in turn, from its third
/// character on. A text to which replacements add more than @p maxGrowth, or maxExpansionGrowth, is
/// left unchanged: its expansion may have no end. Returns the characters that were added, also when
/// they were given up.
MORVEX_EXPORT qint64 expandReferences(QString &text,
                                      const std::function<QString(const QString &)> &lookup,
                                      DollarPair dollarPair = DollarPair::Kept,
                                      qint64 maxGrowth = maxExpansionGrowth);

} // namespace Morvex
