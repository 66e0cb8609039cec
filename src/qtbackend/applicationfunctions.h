#pragma once

#include <QString>
#include <QVariant>

namespace Morvex {

class QtModel;

/// Calls the application side function of that name. Invalid on failure; @p error then has a text.
/// "dumpObject" takes the filters that callers send and does not look at them: the dump holds all
/// visible widgets with all their properties. "grabObjectScreenshot" knows no options.
QVariant callApplicationFunction(QtModel &model, const QString &name, const QVariantList &arguments,
                                 QString *error);

} // namespace Morvex
