#pragma once

#include "morvex_export.h"

#include <QMap>
#include <QString>

namespace Morvex {

/// The name of an object: either multi-property, "{type='QPushButton' text='Save'}", or any other
/// text. Blanks around a name don't matter. The grammar is in docs/object-names.md.
class MORVEX_EXPORT ObjectName
{
public:
    struct PropertyValue
    {
        // Names travel as texts; only that references are 1 is agreed with others.
        enum Kind { EXACT = 0, REFERENCE = 1, WILDCARD = 2, REGEXP = 3 };

        Kind kind = EXACT;
        /// Of a reference the text of the name that it stands for.
        QString text;

        friend bool operator==(const PropertyValue &a, const PropertyValue &b)
        {
            return a.kind == b.kind && a.text == b.text;
        }
    };

    ObjectName() = default;

    /// A text that begins with "{" and can't be read gives a name that is not valid.
    explicit ObjectName(const QString &text);
    explicit ObjectName(const QMap<QString, PropertyValue> &properties);

    /// Whether @p text begins with ":".
    static bool isSymbolicName(const QString &text);

    /// Whether a property of that name in a name refers to another object, whatever its value.
    static bool isRelation(const QString &property);

    bool isMultiProperty() const { return !m_properties.isEmpty(); }
    bool isValid() const { return m_error.isEmpty(); }
    /// What is wrong with the text and where; empty for a valid name.
    QString error() const { return m_error; }

    /// The text form. Properties of a multi-property name come in the order of their names.
    QString qualifiedName() const;
    QMap<QString, PropertyValue> properties() const { return m_properties; }

    friend bool operator==(const ObjectName &a, const ObjectName &b)
    {
        return a.qualifiedName() == b.qualifiedName();
    }

private:
    // As it was given, without the blanks around it, for names that are not multi-property.
    QString m_text;
    QMap<QString, PropertyValue> m_properties;
    QString m_error;
};

} // namespace Morvex
