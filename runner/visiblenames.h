#pragma once

#include <QVariant>

#include <functional>

namespace Morvex {

/// The actions with one name for an object that has got another one when further objects like it
/// had come, as the one of them that is visible. @p isKept says which names are known to scripts
/// and stay.
QVariantList withVisibleNames(QVariantList actions,
                              const std::function<bool(const QString &)> &isKept);

} // namespace Morvex
