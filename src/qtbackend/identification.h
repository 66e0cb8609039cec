#pragma once

#include <QHash>
#include <QString>

class QObject;

namespace Morvex {

/// What the object shows to users: its text, else its title; what is typed into it comes as it is
/// displayed. May be empty.
QString labelOf(const QObject *object);

/// The texts by which an object is distinguished from others, by the names of their properties.
/// What users type is none of them.
QHash<QString, QString> identifyingPropertiesOf(const QObject *object);

/// Whether the value of the property is a text that is shown as dots, or not at all.
bool isSecret(const QObject *object, const QString &property);

/// A name that shows a reader the object; it may fit others as well.
QString realNameOf(const QObject *object);

/// @p text, the value of a property of the object, as it may be in a report: a password comes
/// as it is displayed.
QString textForReaders(const QObject *object, const QString &property, const QString &text);

} // namespace Morvex
