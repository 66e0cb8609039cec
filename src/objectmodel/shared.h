#pragma once

#include "morvex_export.h"

namespace Morvex {

/// Base of objects held by SharedPtr. The count is not atomic: an object and all pointers to it
/// belong to one thread.
class MORVEX_EXPORT Shared
{
public:
    Shared() = default;
    virtual ~Shared();

    Shared(const Shared &) = delete;
    Shared &operator=(const Shared &) = delete;

    void ref() { ++m_count; }

    /// Takes one reference off and deletes the object when it was the last.
    void deref()
    {
        if (--m_count == 0)
            delete this;
    }

    int refCount() const { return m_count; }

private:
    int m_count = 0;
};

} // namespace Morvex
