#pragma once

#include <QHash>
#include <QImage>
#include <QObject>

namespace Morvex {

/// The numbers under which live objects are known. A number is never given twice.
class ObjectRegistry
{
public:
    /// The number of @p object, a new one when it has none yet.
    int idOf(QObject *object);

    /// Null when the object is gone or was never known.
    QObject *object(int id) const { return m_objects.value(id); }

    int addImage(const QImage &image);
    void removeImage(int id) { m_images.remove(id); }
    /// Null for an unknown number.
    QImage image(int id) const { return m_images.value(id); }

private:
    void forget(QObject *object);

    // Receiver of the objects' last signal: its end takes the connections off.
    QObject m_context;
    QHash<QObject *, int> m_ids;
    QHash<int, QObject *> m_objects;
    QHash<int, QImage> m_images;
    int m_lastId = 0;
};

} // namespace Morvex
