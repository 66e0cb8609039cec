#pragma once

#include <QString>

namespace Morvex {

/// Why applications that are started from here show no windows to a user; empty when they do. A
/// display that does not answer takes up to five seconds.
QString whyNoScreen();

} // namespace Morvex
