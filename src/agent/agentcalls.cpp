#include "agent/agentcalls.h"

#include "objectmodel/class.h"
#include "objectmodel/methodlist.h"
#include "objectmodel/namespace.h"
#include "objectmodel/property.h"

namespace Morvex {
namespace {

// A runner releases what it no longer uses.
const int maxHeld = 10000;

Message reply(const Message &request, Message::Type type, const QVariantList &values)
{
    Message answer;
    answer.type = type;
    answer.operation = request.operation;
    answer.number = request.number;
    answer.values = values;
    return answer;
}

} // namespace

AgentCalls::AgentCalls() = default;

AgentCalls::~AgentCalls()
{
    if (m_objectMap && ObjectMap::self() == m_objectMap.get())
        ObjectMap::install(nullptr);
}

Message AgentCalls::answer(const Message &request, InputSequence *input)
{
    QString error;
    m_isFull = false;
    const QVariantList values = perform(request, input, &error);
    if (error.isEmpty() && m_isFull)
        error = QStringLiteral("too many results are held");
    return error.isEmpty() ? reply(request, Message::Answer, values) : failure(request, error);
}

Message AgentCalls::failure(const Message &request, const QString &reason)
{
    return reply(request, Message::Failure, {reason});
}

Message AgentCalls::found(const Message &request, const SharedPtr<Object> &object,
                          const QString &error)
{
    return object ? reply(request, Message::Answer, {refOf(object)})
                  : reply(request, Message::Failure, {error});
}

QVariantList AgentCalls::perform(const Message &request, InputSequence *input, QString *error)
{
    const QVariantList &values = request.values;
    const QString name = values.value(0).toString();
    switch (request.operation) {
    case Message::FindClass:
        return {numberOf(m_inspector.findClass(name))};
    case Message::GlobalClass:
        return {numberOf(m_inspector.globalClass())};
    case Message::HasNamespace:
        return {m_inspector.findNamespace(name) != nullptr};
    case Message::ClassInNamespace: {
        const Namespace *nameSpace = m_inspector.findNamespace(name);
        return {numberOf(nameSpace ? nameSpace->getClass(values.value(1).toString()) : nullptr)};
    }
    case Message::DescribeClass:
        return classValues(values.value(0));
    case Message::HasMethod: {
        const Class *owner = classOf(values.value(0));
        return {owner && owner->methods(values.value(1).toString())};
    }
    case Message::ClassOfObject: {
        const SharedPtr<Object> object = objectOf(values.value(0));
        return {numberOf(object ? object->objectClass() : nullptr)};
    }
    case Message::GetProperty:
        return getProperty(values);
    case Message::SetProperty:
        return setProperty(values, error);
    case Message::InvokeMethod:
        return invoke(values, error);
    case Message::CastObject:
        return cast(values);
    case Message::CallFunction:
        return callFunction(values, input, error);
    case Message::TextOfObject: {
        const SharedPtr<Object> object = objectOf(values.value(0));
        return {object ? object->valueText() : QString()};
    }
    case Message::WrapValue:
        return {refOf(m_inspector.wrapValue(values.value(0)))};
    case Message::SetObjectMap:
        setObjectMap(values);
        return {};
    default:
        *error = QStringLiteral("the agent does not know this request");
        return {};
    }
}

QVariantList AgentCalls::classValues(const QVariant &number) const
{
    const Class *known = classOf(number);
    if (!known)
        return {};
    const auto super = m_classNumbers.constFind(known->superClass());
    return {known->name(), super == m_classNumbers.cend() ? 0u : *super, known->propertyNames()};
}

QVariantList AgentCalls::getProperty(const QVariantList &values)
{
    const SharedPtr<Object> object = objectOf(values.value(0));
    const Class *owner = object ? object->objectClass() : nullptr;
    const Property *property = owner ? owner->property(values.value(1).toString()) : nullptr;
    return {refOf(property ? property->get(object) : SharedPtr<Object>())};
}

QVariantList AgentCalls::setProperty(const QVariantList &values, QString *error)
{
    const SharedPtr<Object> object = objectOf(values.value(0));
    const Class *owner = object ? object->objectClass() : nullptr;
    const Property *property = owner ? owner->property(values.value(1).toString()) : nullptr;
    *error = property ? property->set(object, values.value(2))
                      : QStringLiteral("the object no longer exists");
    return {};
}

// Values: the number of the class, the method, the object, the list of arguments.
QVariantList AgentCalls::invoke(const QVariantList &values, QString *error)
{
    const Class *owner = classOf(values.value(0));
    const MethodList *methods = owner ? owner->methods(values.value(1).toString()) : nullptr;
    ObjectList arguments;
    for (const QVariant &argument : values.value(3).toList())
        arguments.push_back(objectOf(argument));
    SharedPtr<Object> result;
    if (!methods || !methods->invoke(objectOf(values.value(2)), arguments, &result))
        *error = QStringLiteral("the call failed");
    return error->isEmpty() ? QVariantList{refOf(result)} : QVariantList();
}

QVariantList AgentCalls::cast(const QVariantList &values)
{
    const SharedPtr<Object> object = objectOf(values.value(0));
    const SharedPtr<Object> result =
        object ? m_inspector.cast(object, values.value(1).toString()) : object;
    return {refOf(result, result.data() != object.data())};
}

QVariantList AgentCalls::callFunction(const QVariantList &values, InputSequence *input,
                                      QString *error)
{
    if (!input)
        return {};
    return {m_inspector.beginFunction(values.value(0).toString(), values.value(1).toList(), *input,
                                      error)};
}

void AgentCalls::setObjectMap(const QVariantList &values)
{
    // The application may have one of its own.
    if (ObjectMap::self() && ObjectMap::self() != m_objectMap.get())
        return;
    m_objectMap = values.isEmpty() ? nullptr : std::make_unique<ObjectMap>();
    const QVariantMap names = values.value(0).toMap();
    for (auto it = names.cbegin(); it != names.cend(); ++it)
        m_objectMap->insert(it.key(), ObjectName(it.value().toString()));
    ObjectMap::install(m_objectMap.get());
}

void AgentCalls::release(const QVariantList &handles)
{
    for (const QVariant &handle : handles)
        m_held.remove(handle.toUInt());
}

QVariant AgentCalls::refOf(const SharedPtr<Object> &object, bool isCast)
{
    ObjectRef ref;
    if (object) {
        ref.id = object->id();
        ref.classNumber = numberOf(object->objectClass());
        ref.value = object->value();
        if (m_inspector.isLive(*object)) {
            ref.kind = ObjectRef::Live;
            ref.isCast = isCast;
        } else {
            ref.kind = ref.value.isValid() ? ObjectRef::Value : ObjectRef::Held;
            ref.text = object->valueText();
        }
        m_isFull = m_isFull || (ref.kind == ObjectRef::Held && m_held.size() >= maxHeld);
        if (ref.kind == ObjectRef::Held && !m_isFull) {
            ref.handle = ++m_lastHandle;
            m_held.insert(ref.handle, object);
        }
    }
    return QVariant::fromValue(ref);
}

SharedPtr<Object> AgentCalls::objectOf(const QVariant &value)
{
    const auto ref = value.value<ObjectRef>();
    switch (ref.kind) {
    case ObjectRef::Live:
        return m_inspector.objectOf(ref.id, ref.isCast ? classOf(ref.classNumber) : nullptr);
    case ObjectRef::Held:
        return m_held.value(ref.handle);
    case ObjectRef::Value:
        return m_inspector.wrapValue(ref.value);
    case ObjectRef::Null:
        break;
    }
    return {};
}

// From 1 on; 0 is that of none. A class is always numbered after those that it derives from.
quint32 AgentCalls::numberOf(const Class *objectClass)
{
    if (!objectClass)
        return 0;
    const quint32 known = m_classNumbers.value(objectClass);
    if (known != 0)
        return known;
    numberOf(objectClass->superClass());
    m_classes.push_back(objectClass);
    const auto number = static_cast<quint32>(m_classes.size());
    m_classNumbers.insert(objectClass, number);
    return number;
}

const Class *AgentCalls::classOf(const QVariant &number) const
{
    const quint32 wanted = number.toUInt();
    return wanted > 0 && wanted <= m_classes.size() ? m_classes[wanted - 1] : nullptr;
}

} // namespace Morvex
