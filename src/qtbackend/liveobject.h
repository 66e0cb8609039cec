#pragma once

#include "objectmodel/object.h"

class QObject;

namespace Morvex {

class QtModel;

/// An object of the application, known by its number.
class LiveObject : public Object
{
public:
    /// @p objectClass may be null: it is then found when it is asked for.
    LiveObject(QtModel &model, int id, const Class *objectClass = nullptr);

    int id() const override { return m_id; }
    const Class *objectClass() const override;
    bool compare(const SharedPtr<Object> &other) const override;
    QString valueText() const override;
    QVariant value() const override { return {}; }

private:
    QtModel &m_model;
    int m_id;
    const Class *m_class;
};

} // namespace Morvex
