#include "qtbackend/liveobject.h"

#include "qtbackend/identification.h"
#include "qtbackend/qtmodel.h"

namespace Morvex {

LiveObject::LiveObject(QtModel &model, int id, const Class *objectClass)
    : m_model(model)
    , m_id(id)
    , m_class(objectClass)
{
}

const Class *LiveObject::objectClass() const
{
    const QObject *object = m_model.registry().object(m_id);
    if (!object)
        return nullptr;
    return m_class ? m_class : m_model.classOf(object);
}

bool LiveObject::compare(const SharedPtr<Object> &other) const
{
    if (!other)
        return false;
    return other->id() == 0 ? valueText() == other->valueText() : m_id == other->id();
}

QString LiveObject::valueText() const
{
    const QObject *object = m_model.registry().object(m_id);
    return object ? realNameOf(object) : QStringLiteral("(an object that no longer exists)");
}

} // namespace Morvex
