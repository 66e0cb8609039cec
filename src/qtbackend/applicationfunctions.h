#pragma once

#include <QString>
#include <QVariant>

namespace Morvex {

class InputSequence;
class QtModel;

/// Calls the application side function of that name. Invalid on failure; @p error then has a text.
/// "grabObjectScreenshot" knows no options. From "countUsage" on, which takes no arguments, it is
/// counted what users do; "dumpUsage" answers as "dumpObject" does, with all windows. What has to
/// be done in turns of the event loop is added to @p input.
QVariant callApplicationFunction(QtModel &model, const QString &name, const QVariantList &arguments,
                                 InputSequence &input, QString *error);

} // namespace Morvex
