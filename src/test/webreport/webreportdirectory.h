#pragma once

#include <QString>

#include <functional>

namespace Morvex {

/// Makes the directory of a web report with its pages and an empty data file. It appears as a whole
/// or not at all: one that lacks its data file would be refused in each later run. One that another
/// process has made meanwhile stays, which is an error with @p addMore. That one gets the path that
/// it has until then, and returns an error text, as this function does, empty on success.
[[nodiscard]] QString
makeWebReport(const QString &directory,
              const std::function<QString(const QString &path)> &addMore = nullptr);

} // namespace Morvex
