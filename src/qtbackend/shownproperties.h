#pragma once

#include <QString>
#include <QStringList>

class QObject;

namespace Morvex {

// What users see of some widgets and the toolkit has no property for: "cells" of views, "sections"
// of headers, "tabs" of tab bars, "items" of combo boxes, "message" of status bars.

/// The names of those that the object has.
QStringList shownPropertyNames(const QObject *object);

/// Null for one that the object doesn't have.
QString shownProperty(const QObject *object, const QString &name);

} // namespace Morvex
