#pragma once

class QObject;
class QString;

namespace Morvex {

// The models of views of Qt Quick: what a view would show where nobody has scrolled to.

/// Which one of the rows, from 1, that show this text, this row is; 0 when it is the only one, or
/// the model does not say.
int occurrenceInModel(const QObject *view, int row, const QString &text);

/// The same for a table: whether another cell shows the text.
bool isRepeatedInModel(const QObject *table, int row, int column, const QString &text);

} // namespace Morvex
