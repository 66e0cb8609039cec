#include "objectmodel/qt/objectregistry.h"

namespace Morvex {

int ObjectRegistry::idOf(QObject *object)
{
    const auto known = m_ids.constFind(object);
    if (known != m_ids.cend())
        return *known;
    const int id = ++m_lastId;
    m_ids.insert(object, id);
    m_objects.insert(id, object);
    QObject::connect(object, &QObject::destroyed, &m_context,
                     [this](QObject *gone) { forget(gone); });
    return id;
}

void ObjectRegistry::forget(QObject *object)
{
    m_objects.remove(m_ids.take(object));
}

int ObjectRegistry::addImage(const QImage &image)
{
    m_images.insert(++m_lastId, image);
    return m_lastId;
}

} // namespace Morvex
