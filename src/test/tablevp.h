#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"

#include <QString>

namespace Morvex {

class XmlTableRange;

/// Reads the whole content of a table. Returns an error text, empty on success.
MORVEX_EXPORT QString retrieveTableContent(const SharedPtr<Object> &object, XmlTableRange *range);

/// Writes the texts of a table to a file, in the form that verification points hold. Returns an
/// error text, empty on success.
MORVEX_EXPORT QString createTableXmlFile(const SharedPtr<Object> &object, const QString &fileName);

} // namespace Morvex
