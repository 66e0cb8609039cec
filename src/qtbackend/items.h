#pragma once

#include <QString>
#include <QVariant>

class QObject;

namespace Morvex {

class InputSequence;

/// Parts of a widget that are no objects of their own: cells, entries of lists and combo boxes,
/// nodes of trees, tabs, entries of menus, buttons of tool bars, sections of headers.
///
/// A @p selector is one text or a row and a column, from 0. The text of a node or of an entry of a
/// menu is a path: "Metal/Bolts". An entry whose own text has a "/" is found by its text, or with
/// "\/" in its place. A map after the text has the options "column" and "occurrence".

/// Whether exactly one item of the object fits now.
bool hasItem(QObject *object, const QVariantList &selector);

/// The text that the item shows, as "text", and what else it can be asked. Empty on failure;
/// @p error then has a text.
QVariantMap itemProperties(QObject *object, const QVariantList &selector, QString *error);

/// Adds what a user does to an item, once it has been scrolled into sight: "click", "doubleClick",
/// "activate", "select", "expand", "collapse", "toggle", "check", "uncheck", or "edit", which
/// takes @p value for its text. Returns an error text, empty on success.
[[nodiscard]] QString useItem(QObject *object, const QString &action, const QVariantList &selector,
                              const QVariant &value, InputSequence &input);

} // namespace Morvex
