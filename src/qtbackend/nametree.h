#pragma once

#include <QVariantList>

namespace Morvex {

class QtModel;

/// All objects that a name can stand for, each as a list of its id, its depth, which is 0 for a
/// window, and a name that no other one has at this moment. What an object is in comes before it.
QVariantList nameTree(QtModel &model);

} // namespace Morvex
