#pragma once

#include "objectmodel/class.h"
#include "objectmodel/methodlist.h"
#include "objectmodel/property.h"

#include <QMap>

#include <memory>

namespace Morvex {

class RemoteModel;

/// A class of an application in another process. Its description is fetched once, when it is first
/// asked for.
class RemoteClass : public Class
{
public:
    /// The model owns it.
    RemoteClass(RemoteModel &model, quint32 number);

    QString name() const override;
    const Module *module() const override { return nullptr; }
    const Class *superClass() const override;
    const Property *property(const QString &name) const override;
    QStringList propertyNames() const override;
    const MethodList *methods(const QString &name) const override;

private:
    void describe() const;

    RemoteModel &m_model;
    const quint32 m_number;
    mutable bool m_isDescribed = false;
    mutable QString m_name;
    mutable const Class *m_superClass = nullptr;
    mutable QStringList m_propertyNames;
    mutable QMap<QString, std::shared_ptr<Property>> m_properties;
    mutable QMap<QString, std::shared_ptr<MethodList>> m_methods;
};

} // namespace Morvex
