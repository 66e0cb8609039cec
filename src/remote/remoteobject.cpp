#include "remote/remoteobject.h"

#include "remote/remotemodel.h"

namespace Morvex {

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

} // namespace Morvex
