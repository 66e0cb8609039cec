#pragma once

#include "objectmodel/class.h"
#include "objectmodel/methodlist.h"
#include "objectmodel/property.h"

#include <QMap>

#include <functional>
#include <memory>

namespace Morvex {

/// A class put together at run time. Properties and methods are looked up in the super classes
/// too.
class ModelClass : public Class
{
public:
    using Reader = std::function<SharedPtr<Object>(const Object &)>;
    /// Returns an error text, empty on success.
    using Writer = std::function<QString(const Object &, const QVariant &)>;
    using Method = std::function<bool(const SharedPtr<Object> &self, const ObjectList &arguments,
                                      SharedPtr<Object> *result)>;

    ModelClass(const QString &name, const Class *superClass);

    /// Without a writer the property is read only.
    void addProperty(const QString &name, const Reader &reader, const Writer &writer = {});
    void addMethod(const QString &name, const Method &method);

    QString name() const override { return m_name; }
    const Module *module() const override { return nullptr; }
    const Class *superClass() const override { return m_superClass; }
    const Property *property(const QString &name) const override;
    QStringList propertyNames() const override;
    const MethodList *methods(const QString &name) const override;

private:
    QString m_name;
    const Class *m_superClass;
    QMap<QString, std::shared_ptr<Property>> m_properties;
    QMap<QString, std::shared_ptr<MethodList>> m_methods;
};

} // namespace Morvex
