#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"

#include <QByteArray>
#include <QString>

namespace Morvex {

// Snapshots of objects as the application side makes them, steered by the filter files of the
// installation, of its toolkits and of the user. Each gives the dump of a tree of elements, empty
// on failure; @p error, which may be null, then has a text.

/// @p extraFilter, the content of one more filter, comes last; empty for none.
MORVEX_EXPORT QByteArray requestObjectSnapshot(SharedPtr<Object> object,
                                               const QByteArray &extraFilter, QString *error);
/// The object of that name.
MORVEX_EXPORT QByteArray requestObjectSnapshot(const QString &objectName,
                                               const QByteArray &extraFilter, QString *error);
/// With the filters for verification points.
MORVEX_EXPORT QByteArray requestObjectSnapshotForVisualVP(SharedPtr<Object> object, QString *error);

/// The dump in an answer of the application side, whose first byte distinguishes one from an error.
MORVEX_EXPORT QByteArray dumpOfAnswer(const QByteArray &answer, QString *error);

/// The dump as an XML document. Empty for an empty dump, which is no failure.
MORVEX_EXPORT QByteArray convertDumpToXml(const QByteArray &dump, QString *error);

} // namespace Morvex
