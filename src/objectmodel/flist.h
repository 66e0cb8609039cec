#pragma once

#include "objectmodel/fsequence.h"

#include <list>

namespace Morvex {

/// Elements keep their address until they are removed.
template <typename T>
class FList : public FSequence<std::list<T>>
{
public:
    using FSequence<std::list<T>>::FSequence;
};

} // namespace Morvex
