#pragma once

#include <QMap>
#include <QString>

namespace Morvex {

/// Texts of JavaScript as a person would write them.

/// A literal in double quotes.
QString javaScriptString(const QString &text);

/// The property @p key of @p object: object.key, or object["Save As"].
QString javaScriptMember(const QString &object, const QString &key);

/// An object literal in one line; the values are code.
QString javaScriptObject(const QMap<QString, QString> &members);

/// A word in camel case that can follow a dot; never empty. Made of the first words of a long text,
/// and of a symbol what it is called.
QString javaScriptIdentifier(const QString &text);

} // namespace Morvex
