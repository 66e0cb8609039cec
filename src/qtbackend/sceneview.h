#pragma once

#include <QObject>
#include <QVariant>

namespace Morvex {

// Lists, grids, tables and combo boxes of Qt Quick. Of what they show they make an item for each
// row as long as it can be seen.

/// The view of a combo box is in its popup; null for what has none.
QObject *sceneViewOf(QObject *object);

/// Whether it is a combo box of Qt Quick.
bool isSceneComboBox(const QObject *object);

/// What an entry of a combo box shows, also while that is closed.
QString sceneEntryText(QObject *box, int row);

/// What a script names the entry by.
QVariantList sceneEntrySelector(QObject *box, int row);

/// Whether the item shows one part as the current one, and moving its content changes which.
bool isScenePaged(const QObject *item);

/// What a script names an item of a view by: the view, or the combo box that it is of, and the text
/// or the row and column of it.
struct SceneRow
{
    QObject *owner = nullptr;
    QVariantList selector;
    /// All that is shown for the row.
    QObject *delegate = nullptr;
};

/// That in which the item is. Without an owner for an item that is in none.
SceneRow sceneRowOf(QObject *item);

/// What users read of an item; empty when it shows no text.
QString shownTextOf(const QObject *item);

/// The items for rows that there are now, without those kept for later.
QObjectList delegatesOf(QObject *view);

/// Negative when there is none.
int sceneRowNumber(QObject *view, const QObject *delegate);

/// Moves the content until there is an item for the row.
void showSceneRow(QObject *view, int row);

/// The row that shows the text, looked for in what is out of sight as well; negative without one.
/// @p occurrence counts from 1.
int findSceneRow(QObject *view, const QString &text, int occurrence);

} // namespace Morvex
