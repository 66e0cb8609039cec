#include "remote/remotemodel.h"

#include "objectmodel/value/valueobject.h"
#include "remote/remoteclass.h"
#include "remote/remoteobject.h"

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
