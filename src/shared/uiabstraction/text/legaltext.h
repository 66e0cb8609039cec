#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex::UIAbstraction {

/// The text with U+FFFD for what XML can't hold. Qt's writer drops control characters without a
/// word, and gives up at half a surrogate pair.
MORVEX_EXPORT QString legalText(const QString &text);

} // namespace Morvex::UIAbstraction
