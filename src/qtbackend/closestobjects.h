#pragma once

#include "qtbackend/namecondition.h"

namespace Morvex {

/// The objects that come closest to the conditions, with what is different in them. Empty when
/// nothing is near.
QString describeClosest(QtModel &model, const NameConditions &conditions);

/// The objects, which all fit one name, with what distinguishes those of the same real name.
QString describeFitting(const std::vector<QObject *> &objects);

} // namespace Morvex
