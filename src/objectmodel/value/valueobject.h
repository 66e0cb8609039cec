#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"

namespace Morvex {

/// A value that is not a live object.
class MORVEX_EXPORT ValueObject : public Object
{
public:
    ValueObject(const QVariant &value, const Class *valueClass);
    /// For values whose text is not that of their variant, such as enumerators.
    ValueObject(const QVariant &value, const QString &text, const Class *valueClass);

    int id() const override { return 0; }
    const Class *objectClass() const override { return m_class; }
    bool compare(const SharedPtr<Object> &other) const override;
    QString valueText() const override { return m_text; }
    QVariant value() const override { return m_value; }

private:
    QVariant m_value;
    QString m_text;
    const Class *m_class;
};

/// Whether there is a text for values of this type. Values without one equal no text.
MORVEX_EXPORT bool hasText(const QVariant &value);

/// How a value is shown in messages and compared with the texts of names. Does not depend on the
/// locale. A value without a text gives its type in parentheses.
MORVEX_EXPORT QString textOfValue(const QVariant &value);

} // namespace Morvex
