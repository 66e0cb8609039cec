#include "remote/remoteclass.h"

#include "remote/remotemodel.h"

namespace Morvex {
namespace {

class RemoteProperty : public Property
{
public:
    RemoteProperty(RemoteModel &model, const QString &name)
        : m_model(model)
        , m_name(name)
    {
    }

    QString name() const override { return m_name; }

    SharedPtr<Object> get(const SharedPtr<Object> &object) const override
    {
        return m_model.objectOf(m_model.session()
                                    .request(Message::GetProperty, {m_model.refOf(object), m_name})
                                    .values.value(0));
    }

    QString set(const SharedPtr<Object> &object, const QVariant &value) const override
    {
        return m_model.session()
            .request(Message::SetProperty, {m_model.refOf(object), m_name, value})
            .error;
    }

private:
    RemoteModel &m_model;
    QString m_name;
};

class RemoteMethod : public MethodList
{
public:
    RemoteMethod(RemoteModel &model, quint32 classNumber, const QString &name)
        : m_model(model)
        , m_classNumber(classNumber)
        , m_name(name)
    {
    }

    bool invoke(const SharedPtr<Object> &self, const ObjectList &arguments,
                SharedPtr<Object> *result) const override
    {
        QVariantList refs;
        for (const SharedPtr<Object> &argument : arguments)
            refs += m_model.refOf(argument);
        const RemoteSession::Reply reply = m_model.session().request(
            Message::InvokeMethod, {m_classNumber, m_name, m_model.refOf(self), QVariant(refs)});
        if (!reply.error.isEmpty())
            return false;
        *result = m_model.objectOf(reply.values.value(0));
        return true;
    }

private:
    RemoteModel &m_model;
    quint32 m_classNumber;
    QString m_name;
};

} // namespace

RemoteClass::RemoteClass(RemoteModel &model, quint32 number)
    : m_model(model)
    , m_number(number)
{
}

void RemoteClass::describe() const
{
    if (m_isDescribed)
        return;
    const RemoteSession::Reply reply =
        m_model.session().request(Message::DescribeClass, {m_number});
    m_isDescribed = reply.error.isEmpty();
    const QStringList propertyNames = reply.values.value(2).toStringList();
    if (!m_isDescribed ||
        !m_model.hasRoomFor(QStringList(reply.values.value(0).toString()) + propertyNames))
        return;
    m_name = reply.values.value(0).toString();
    const quint32 super = reply.values.value(1).toUInt();
    // Those that a class derives from have lower numbers, so that no chain of them has no end.
    m_superClass = super < m_number ? m_model.classOf(super) : nullptr;
    m_propertyNames = propertyNames;
    for (const QString &property : qAsConst(m_propertyNames))
        m_properties.insert(property, std::make_shared<RemoteProperty>(m_model, property));
}

QString RemoteClass::name() const
{
    describe();
    return m_name;
}

const Class *RemoteClass::superClass() const
{
    describe();
    return m_superClass;
}

const Property *RemoteClass::property(const QString &name) const
{
    describe();
    return m_properties.value(name).get();
}

QStringList RemoteClass::propertyNames() const
{
    describe();
    return m_propertyNames;
}

const MethodList *RemoteClass::methods(const QString &name) const
{
    const auto known = m_methods.constFind(name);
    if (known != m_methods.cend())
        return known->get();
    const RemoteSession::Reply reply =
        m_model.session().request(Message::HasMethod, {m_number, name});
    if (!reply.values.value(0).toBool())
        return nullptr;
    return m_methods.insert(name, std::make_shared<RemoteMethod>(m_model, m_number, name))->get();
}

} // namespace Morvex
