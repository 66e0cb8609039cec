#include "qtbackend/modelclass.h"

namespace Morvex {
namespace {

class FunctionProperty : public Property
{
public:
    FunctionProperty(const QString &name, const ModelClass::Reader &reader,
                     const ModelClass::Writer &writer)
        : m_name(name)
        , m_reader(reader)
        , m_writer(writer)
    {
    }

    QString name() const override { return m_name; }

    SharedPtr<Object> get(const SharedPtr<Object> &object) const override
    {
        return object ? m_reader(*object) : SharedPtr<Object>();
    }

    QString set(const SharedPtr<Object> &object, const QVariant &value) const override
    {
        if (!object || !m_writer)
            return QStringLiteral("property '%1' can't be written").arg(m_name);
        return m_writer(*object, value);
    }

private:
    QString m_name;
    ModelClass::Reader m_reader;
    ModelClass::Writer m_writer;
};

class FunctionMethod : public MethodList
{
public:
    explicit FunctionMethod(const ModelClass::Method &method)
        : m_method(method)
    {
    }

    bool invoke(const SharedPtr<Object> &self, const ObjectList &arguments,
                SharedPtr<Object> *result) const override
    {
        return m_method(self, arguments, result);
    }

private:
    ModelClass::Method m_method;
};

} // namespace

ModelClass::ModelClass(const QString &name, const Class *superClass)
    : m_name(name)
    , m_superClass(superClass)
{
}

void ModelClass::addProperty(const QString &name, const Reader &reader, const Writer &writer)
{
    m_properties.insert(name, std::make_shared<FunctionProperty>(name, reader, writer));
}

void ModelClass::addMethod(const QString &name, const Method &method)
{
    m_methods.insert(name, std::make_shared<FunctionMethod>(method));
}

const Property *ModelClass::property(const QString &name) const
{
    const auto found = m_properties.constFind(name);
    if (found != m_properties.cend())
        return found->get();
    return m_superClass ? m_superClass->property(name) : nullptr;
}

QStringList ModelClass::propertyNames() const
{
    QStringList names = m_properties.keys();
    if (m_superClass) {
        for (const QString &name : m_superClass->propertyNames()) {
            if (!m_properties.contains(name))
                names += name;
        }
    }
    return names;
}

const MethodList *ModelClass::methods(const QString &name) const
{
    const auto found = m_methods.constFind(name);
    if (found != m_methods.cend())
        return found->get();
    return m_superClass ? m_superClass->methods(name) : nullptr;
}

} // namespace Morvex
