#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"

#include <QString>

namespace Morvex {

class XmlTableRange;

/// Reads the whole content of a table. Returns an error text, empty on success.
[[nodiscard]] MORVEX_EXPORT QString retrieveTableContent(const SharedPtr<Object> &object,
                                                         XmlTableRange *range);

/// Writes the texts of a table to a file, in the form that verification points hold. Returns an
/// error text, empty on success.
[[nodiscard]] MORVEX_EXPORT QString createTableXmlFile(const SharedPtr<Object> &object,
                                                       const QString &fileName);

/// Whether a verification point of type "Table" holds an expectation that can't be read, for which
/// its comparison logs a pass and fails. False for files of any other kind, also for those that
/// can't be read at all.
MORVEX_EXPORT bool hasUnreadableTable(const QString &pointFile);

} // namespace Morvex
