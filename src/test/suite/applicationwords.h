#pragma once

#include "morvex_export.h"

#include <QStringList>

namespace Morvex {

/// The words of an application's command line in suite.conf. Double quotes hold a word together and
/// are dropped.
MORVEX_EXPORT QStringList applicationWords(const QString &text);

} // namespace Morvex
