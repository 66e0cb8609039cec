#pragma once

#include <QVariant>

class QAbstractItemView;
class QComboBox;
class QHeaderView;
class QModelIndex;
class QTabBar;
class QWidget;

namespace Morvex {

// How a script names an item: by its text where that says which, as docs/application-protocol.md
// has it.

/// Empty for an item that has no name.
QVariantList selectorOf(QAbstractItemView *view, const QModelIndex &index);
QVariantList selectorOf(QComboBox *box, int row);
/// Of what tabsOf gives.
QVariantList selectorOf(QTabBar *bar, int tab);
QVariantList selectorOf(QHeaderView *header, int section);

/// What has the tabs of the bar for a script: the tab widget that it is a part of, or itself.
QWidget *tabsOf(QTabBar *bar);

} // namespace Morvex
