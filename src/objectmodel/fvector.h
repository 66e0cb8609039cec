#pragma once

#include "objectmodel/fsequence.h"

#include <cstddef>
#include <vector>

namespace Morvex {

/// Array counterpart of FList: has access by index.
template <typename T>
class FVector : public FSequence<std::vector<T>>
{
public:
    using FSequence<std::vector<T>>::FSequence;

    const T &at(int index) const { return this->m_elements[static_cast<std::size_t>(index)]; }
    T &operator[](int index) { return this->m_elements[static_cast<std::size_t>(index)]; }
    const T &operator[](int index) const { return at(index); }
};

} // namespace Morvex
