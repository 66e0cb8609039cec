#pragma once

#include <QString>
#include <QVariant>

class QObject;

namespace Morvex {

/// Parts of a widget that are no objects of their own: cells, entries of lists and combo boxes,
/// nodes of trees, tabs, and entries of menus.
///
/// A @p selector is one text or a row and a column, from 0. The text of a node or of an entry of a
/// menu is a path: "Metal/Bolts". An entry whose own text has a "/" is found by its text.

/// Whether the object has such an item now.
bool hasItem(QObject *object, const QVariantList &selector);

/// The text that the item shows. Null on failure; @p error then has a text.
QString itemText(QObject *object, const QVariantList &selector, QString *error);

/// Does what a user does to an item, once it has been scrolled into sight. @p action is "click",
/// "doubleClick", "activate", "expand", "collapse" or "toggle". Returns an error text, empty on
/// success.
[[nodiscard]] QString useItem(QObject *object, const QString &action, const QVariantList &selector);

} // namespace Morvex
