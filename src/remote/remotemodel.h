#pragma once

#include "objectmodel/object.h"
#include "objectmodel/objectmap.h"
#include "remote/protocol/objectref.h"
#include "remote/remotesession.h"

#include <QHash>

#include <memory>
#include <optional>

namespace Morvex {

class Class;

/// The objects and classes of an application at the other end of a connection. Objects keep it
/// alive: they may be asked after the application has ended, and then say so.
class RemoteModel : public std::enable_shared_from_this<RemoteModel>
{
public:
    explicit RemoteModel(std::unique_ptr<RemoteSession> session);
    ~RemoteModel();

    RemoteSession &session() { return *m_session; }

    SharedPtr<Object> objectOf(const QVariant &ref);
    /// That of none for an object of another application.
    QVariant refOf(const SharedPtr<Object> &object) const;
    bool owns(const SharedPtr<Object> &object) const;

    /// Null for 0, which is no class, and for what is no number. Each number has one class.
    const Class *classOf(const QVariant &number);
    /// Has nothing.
    const Class *emptyClass();
    /// The class of plain values of this type; null when the application can't be asked.
    const Class *valueClass(const QVariant &value);

    /// Counts what is kept of descriptions of classes, in characters. False when that is too much.
    bool hasRoomFor(const QStringList &names);

    /// Makes the names of the object map in use known to the application, unless they are.
    void sendObjectMap();

private:
    std::unique_ptr<RemoteSession> m_session;
    QHash<quint32, std::shared_ptr<Class>> m_classes;
    std::shared_ptr<Class> m_emptyClass;
    qint64 m_room;
    QHash<int, const Class *> m_valueClasses;
    // None at first, as at the other end.
    std::optional<QMap<QString, ObjectName>> m_sentNames;
};

} // namespace Morvex
