#pragma once

#include <QByteArray>

class QObject;

namespace Morvex {

class QtModel;

/// The tree of widgets from @p object downwards in the stream form of UI elements: a count of
/// 1, then the element with its children. Ids are the numbers of the model. Called for a widget.
QByteArray dumpElements(QtModel &model, QObject *object);

} // namespace Morvex
