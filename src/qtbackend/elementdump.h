#pragma once

#include <QByteArray>

class QObject;

namespace Morvex {

class ElementFilter;
class QtModel;

/// The tree of visible widgets from @p object downwards in the stream form of UI elements: a count
/// of 1, then the element with its children; items of menus are elements too. Ids are the numbers
/// of the model; symbolic names are those of the object map in use. Of passwords there is only what
/// is displayed. The object itself is at 0,0 and has the picture, a pixel for each of its own
/// coordinates; it is neither transparent nor hidden. Called for a widget.
QByteArray dumpElements(QtModel &model, QObject *object, const ElementFilter &filter);

} // namespace Morvex
