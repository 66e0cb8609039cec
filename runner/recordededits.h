#pragma once

#include <QVariant>

#include <vector>

namespace Morvex {

/// Takes out what was done in the editor of an item, which the action @p edit says all of.
/// What was done elsewhere while it was open stays.
void dropPartsOfEdit(std::vector<QVariantMap> *actions, const QVariantMap &edit);

} // namespace Morvex
