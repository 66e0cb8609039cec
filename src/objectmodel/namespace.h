#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

class Class;

/// A namespace of classes. Belongs to the inspector.
class MORVEX_EXPORT Namespace
{
public:
    virtual ~Namespace();

    /// The name without that of the namespace; null when there is no such class.
    virtual const Class *getClass(const QString &name) const = 0;
};

} // namespace Morvex
