#pragma once

#include "objectmodel/objectname.h"

#include <QRegularExpression>

#include <vector>

class QObject;

namespace Morvex {

class QtModel;

/// One property of a name, ready to be compared with many objects.
struct NameCondition
{
    QString property;
    ObjectName::PropertyValue value;
    /// Of wildcards and regular expressions.
    QRegularExpression expression;
    /// Of references.
    const QObject *referenced = nullptr;
    /// Compares texts as users read them.
    bool ignoresMnemonics = false;

    bool isReference() const { return value.kind == ObjectName::PropertyValue::REFERENCE; }
    bool canIgnoreMnemonics() const;
    /// What counts of a text where it has to be the same.
    QString comparedText(const QString &text) const;
    bool holds(QtModel &model, QObject *object) const;

    /// What the value is compared with in the object. False when it has no such property.
    bool readText(QtModel &model, QObject *object, QString *text) const;
    /// The same for messages: a password comes as it is displayed.
    bool readShownText(QtModel &model, QObject *object, QString *text) const;

private:
    bool fits(QLatin1String text) const;
    bool fits(const QString &text) const;
    bool fitsReference(QtModel &model, QObject *object) const;
    bool fitsType(const QObject *object) const;
};

using NameConditions = std::vector<NameCondition>;

} // namespace Morvex
