#pragma once

#include "morvex_export.h"
#include "shared/titancmp.h"

#include <QByteArray>
#include <QString>

class QDomElement;
class QFileInfo;
class QXmlStreamWriter;

namespace Morvex {

// Files of visual verification points: a tree of elements with the checks to make on it. Their
// dumps are those of requestObjectSnapshotForVisualVP. @p error may be null.

/// Makes a file that expects of the object of that name what the dump holds. The installation's
/// defaults say what it checks; the classes that they name are those of the running application.
/// False with a text in @p error on failure, which may leave a part of the file.
[[nodiscard]] MORVEX_EXPORT bool createTitanVPFile(const QByteArray &dump, const QFileInfo &file,
                                                   const QString &objectName, QString *error);

/// Writes the tree and its checks into a document of the caller's.
[[nodiscard]] MORVEX_EXPORT bool writeTitanXmlFragment(const QByteArray &dump,
                                                       QXmlStreamWriter &writer, QString *error);

/// Adds the checks of properties in an element `check` to @p map.
MORVEX_EXPORT void visualVpVerifyProperties(QDomElement &check, TitanPropertyChecksOfElements *map);

} // namespace Morvex
