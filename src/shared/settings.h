#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// Where the tool keeps a user's settings.
class MORVEX_EXPORT Settings
{
public:
    /// The directory named by MORVEX_USER_SETTINGS_DIR, or ".morvex" in the home directory. It is
    /// created when it does not exist; whether that worked shows when a file is written there.
    static QString morvexSettingsDir();
};

} // namespace Morvex
