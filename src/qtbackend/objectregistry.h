#pragma once

#include <QHash>
#include <QImage>
#include <QObject>
#include <QPointer>

namespace Morvex {

/// The numbers under which live objects are known. A number is never given twice.
class ObjectRegistry
{
public:
    /// The number of @p object, a new one when it has none yet.
    int idOf(QObject *object);

    /// Null when the object no longer exists or was never known.
    QObject *object(int id) const { return m_objects.value(id); }

    int addImage(const QImage &image);
    void removeImage(int id) { m_images.remove(id); }
    /// Null for an unknown number.
    QImage image(int id) const { return m_images.value(id); }

private:
    void forgetDeletedObjects();

    // An address may be that of a later object: only the other table shows that.
    QHash<QObject *, int> m_ids;
    // Guarded, since an application may take any connection off its objects.
    QHash<int, QPointer<QObject>> m_objects;
    QHash<int, QImage> m_images;
    int m_lastId = 0;
    int m_cleanUpAt = 1024;
};

} // namespace Morvex
