#pragma once

#include "morvex_export.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace Morvex {

/// Reads the metadata (config.xml) of a suite or a test case. Returns an error text, empty on
/// success. The outputs are replaced on success and left alone otherwise, and when the file does
/// not exist, which is no error. @p settings and @p passwords may be null.
[[nodiscard]] MORVEX_EXPORT QString tryReadTestConfig(const QString &path, QString *summary,
                                                      QString *description, QStringList *tags,
                                                      QMap<QString, QString> *settings,
                                                      QMap<QString, QString> *passwords);

} // namespace Morvex
