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

/// Replaces each $(NAME) in @p text by what @p lookup gives for NAME; a replacement that holds a
/// reference is expanded in turn, and an empty one leaves the reference as it stands. An expansion
/// that does not end, or grows beyond any use, leaves the whole text unchanged.
MORVEX_EXPORT void expandReferences(QString &text,
                                    const std::function<QString(const QString &)> &lookup,
                                    DollarPair dollarPair = DollarPair::Kept);

} // namespace Morvex
