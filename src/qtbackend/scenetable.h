#pragma once

class QObject;

namespace Morvex {

struct ItemSelector;

/// The item for the cell; null when there is none now, as it is out of sight.
QObject *sceneCellAt(QObject *table, const ItemSelector &selector);

/// Moves the content until there is an item for the cell, and returns that. Null, with the content
/// as it was, when there is no such cell.
QObject *showSceneCell(QObject *table, const ItemSelector &selector);

/// To be called after its content has been moved: it has items for what is in sight, and no others.
void settleSceneTable(QObject *table);

} // namespace Morvex
