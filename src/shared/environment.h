#pragma once

#include "morvex_export.h"

#include <string>

namespace Morvex {

/// The environment of this process, with names and values in UTF-8 whatever the locale's encoding
/// is. Not guarded by a lock: call from one thread.
class MORVEX_EXPORT Environment
{
public:
    /// Empty when the variable is not set.
    static std::string getVariable(const std::string &name);
    static void setVariable(const std::string &name, const std::string &value);
    static void unsetVariable(const std::string &name);
};

/// Text that can't be converted is reported through perror and comes back unchanged.
MORVEX_EXPORT std::string utf8ToLocal8Bit(const std::string &text);
MORVEX_EXPORT std::string local8BitToUTF8(const std::string &text);

} // namespace Morvex
