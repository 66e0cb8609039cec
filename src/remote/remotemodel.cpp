#include "remote/remotemodel.h"

#include "objectmodel/class.h"
#include "objectmodel/methodlist.h"
#include "objectmodel/property.h"
#include "objectmodel/value/valueobject.h"

namespace Morvex {
namespace {

const int maxClasses = 20000;
// Of the names of all classes and their properties, each of which takes room beside its characters.
const qint64 maxNames = 32 * 1024 * 1024;
const qint64 roomOfName = 100;

QVariantList valuesOf(const std::optional<QMap<QString, ObjectName>> &names)
{
    if (!names)
        return {};
    QVariantMap texts;
    for (auto it = names->cbegin(); it != names->cend(); ++it)
        texts.insert(it.key(), it->qualifiedName());
    return {texts};
}

// An object of an application in another process, or something that the agent there holds.
class RemoteObject : public Object
{
public:
    RemoteObject(const std::shared_ptr<RemoteModel> &model, const ObjectRef &ref);
    ~RemoteObject() override;

    const ObjectRef &ref() const { return m_ref; }
    // Numbers say nothing in another application.
    bool isOf(const RemoteModel *model) const { return m_model.get() == model; }

    int id() const override { return m_ref.id; }
    const Class *objectClass() const override;
    bool compare(const SharedPtr<Object> &other) const override;
    QString valueText() const override;
    QVariant value() const override { return {}; }

private:
    std::shared_ptr<RemoteModel> m_model;
    ObjectRef m_ref;
};

RemoteObject::RemoteObject(const std::shared_ptr<RemoteModel> &model, const ObjectRef &ref)
    : m_model(model)
    , m_ref(ref)
{
}

RemoteObject::~RemoteObject()
{
    if (m_ref.kind == ObjectRef::Held)
        m_model->session().release(m_ref.handle);
}

const Class *RemoteObject::objectClass() const
{
    if (m_ref.kind == ObjectRef::Held)
        return m_model->classOf(m_ref.classNumber);
    return m_model->classOf(m_model->session()
                                .request(Message::ClassOfObject, {QVariant::fromValue(m_ref)})
                                .values.value(0));
}

bool RemoteObject::compare(const SharedPtr<Object> &other) const
{
    if (!other)
        return false;
    if (other->id() == 0)
        return valueText() == other->valueText();
    const auto *remote = dynamic_cast<const RemoteObject *>(other.data());
    return remote && remote->isOf(m_model.get()) && id() == other->id();
}

QString RemoteObject::valueText() const
{
    if (m_ref.kind == ObjectRef::Held)
        return m_ref.text;
    const RemoteSession::Reply reply =
        m_model->session().request(Message::TextOfObject, {QVariant::fromValue(m_ref)});
    return reply.error.isEmpty() ? reply.values.value(0).toString()
                                 : QStringLiteral("(%1)").arg(reply.error);
}

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

// A class of an application in another process. Its description is fetched once, when it is first
// asked for.
class RemoteClass : public Class
{
public:
    // The model owns it.
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

} // namespace

RemoteModel::RemoteModel(std::unique_ptr<RemoteSession> session)
    : m_session(std::move(session))
    , m_room(maxNames)
{
}

RemoteModel::~RemoteModel() = default;

SharedPtr<Object> RemoteModel::objectOf(const QVariant &value)
{
    const auto ref = value.value<ObjectRef>();
    switch (ref.kind) {
    case ObjectRef::Live:
    case ObjectRef::Held:
        return SharedPtr<Object>(new RemoteObject(shared_from_this(), ref));
    case ObjectRef::Value:
        return SharedPtr<Object>(new ValueObject(ref.value, ref.text, classOf(ref.classNumber)));
    case ObjectRef::Null:
        break;
    }
    return {};
}

bool RemoteModel::owns(const SharedPtr<Object> &object) const
{
    const auto *remote = dynamic_cast<const RemoteObject *>(object.data());
    return remote && remote->isOf(this);
}

QVariant RemoteModel::refOf(const SharedPtr<Object> &object) const
{
    ObjectRef ref;
    if (const auto *remote = dynamic_cast<const RemoteObject *>(object.data())) {
        if (remote->isOf(this))
            ref = remote->ref();
    } else if (object) {
        ref.kind = ObjectRef::Value;
        ref.value = object->value();
    }
    return QVariant::fromValue(ref);
}

const Class *RemoteModel::classOf(const QVariant &number)
{
    const quint32 wanted = number.toUInt();
    // A hostile application could have a class derive from another one without end.
    if (wanted == 0 || (m_classes.size() >= maxClasses && !m_classes.contains(wanted)))
        return nullptr;
    auto &known = m_classes[wanted];
    if (!known)
        known = std::make_shared<RemoteClass>(*this, wanted);
    return known.get();
}

const Class *RemoteModel::emptyClass()
{
    if (!m_emptyClass)
        m_emptyClass = std::make_shared<RemoteClass>(*this, 0);
    return m_emptyClass.get();
}

const Class *RemoteModel::valueClass(const QVariant &value)
{
    const Class *&known = m_valueClasses[value.userType()];
    if (!known)
        known = classOf(m_session->request(Message::WrapValue, {value})
                            .values.value(0)
                            .value<ObjectRef>()
                            .classNumber);
    return known;
}

bool RemoteModel::hasRoomFor(const QStringList &names)
{
    for (const QString &name : names)
        m_room -= roomOfName + name.size();
    return m_room >= 0;
}

void RemoteModel::sendObjectMap()
{
    std::optional<QMap<QString, ObjectName>> names;
    if (ObjectMap::self())
        names = ObjectMap::self()->names();
    if (names == m_sentNames)
        return;
    if (m_session->request(Message::SetObjectMap, valuesOf(names)).error.isEmpty())
        m_sentNames = names;
}

} // namespace Morvex
