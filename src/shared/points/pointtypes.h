#pragma once

#include <QLatin1String>
#include <QStringList>

namespace Morvex {

// The types of verification points, as their files and scripts name them.

namespace PointType {

/// Takes names of properties, or paths of them.
const QLatin1String properties("ObjectProperties");
const QLatin1String screenshot("Screenshot");
const QLatin1String table("Table");
const QLatin1String visual("Visual");

} // namespace PointType

inline QStringList pointTypes()
{
    return {PointType::properties, PointType::screenshot, PointType::table, PointType::visual};
}

} // namespace Morvex
