#pragma once

#include <QByteArray>

class QObject;

namespace Morvex {

class QtModel;

/// The tree of widgets from @p object downwards in the stream form of UI elements: a count of
/// 1, then the element with its children. Ids are the numbers of the model; symbolic names are
/// those of the object map in use. Properties are all that the classes of the model have and there
/// is a text for, but of passwords only what is displayed. Called for a widget.
QByteArray dumpElements(QtModel &model, QObject *object);

} // namespace Morvex
