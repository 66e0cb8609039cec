#pragma once

#include <QString>

class QAbstractItemView;
class QModelIndex;
class QWidget;

namespace Morvex {

/// Whether the view has opened an editor of an item, of whatever kind.
bool isEditing(const QAbstractItemView *view);

/// The view that has opened the widget as the editor of an item; null for any other widget.
QAbstractItemView *viewOfEditor(const QWidget *widget);

/// The same, of an editor with a value that a script can give the item.
QAbstractItemView *editedView(const QWidget *editor);

/// Whether the widget is, or is in, an editor that the view around it has opened for an item.
bool isEditedIn(const QWidget *widget, const QWidget *viewport);

/// The item that an editor of the view is for.
QModelIndex editedIndex(const QAbstractItemView *view, const QWidget *editor);

/// What the editor of an item holds, as editing an item takes it: dates in the notation of ISO
/// 8601, else what is shown without prefix and suffix.
QString editorText(const QWidget *editor);

/// Whether Return ends a line in it.
bool hasLines(const QWidget *editor);

/// Whether it is given a value, as it has no text that can be typed over.
bool isGivenValue(const QWidget *editor);

/// Gives such an editor its value. Returns an error text, empty on success.
[[nodiscard]] QString giveValue(QWidget *editor, const QString &text);

} // namespace Morvex
