#include "qtbackend/objectregistry.h"

namespace Morvex {

int ObjectRegistry::idOf(QObject *object)
{
    const int known = m_ids.value(object);
    if (known != 0 && m_objects.value(known) == object)
        return known;
    m_objects.remove(known);
    if (m_objects.size() >= m_cleanUpAt)
        forgetDeletedObjects();
    const int id = ++m_lastId;
    m_ids.insert(object, id);
    m_objects.insert(id, object);
    return id;
}

void ObjectRegistry::forgetDeletedObjects()
{
    for (auto it = m_ids.begin(); it != m_ids.end();) {
        if (m_objects.value(*it)) {
            ++it;
        } else {
            m_objects.remove(*it);
            it = m_ids.erase(it);
        }
    }
    // Twice what is left, so that the cost of looking at all of them is shared by many.
    m_cleanUpAt = qMax(1024, 2 * m_objects.size());
}

int ObjectRegistry::addImage(const QImage &image)
{
    m_images.insert(++m_lastId, image);
    return m_lastId;
}

} // namespace Morvex
