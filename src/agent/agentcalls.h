#pragma once

#include "objectmodel/objectmap.h"
#include "qtbackend/qtinspector.h"
#include "remote/protocol/message.h"
#include "remote/protocol/objectref.h"

#include <QHash>

#include <memory>

namespace Morvex {

/// What requests ask of the objects of this process, and the answers in the form in which they
/// travel. In the main thread.
class AgentCalls
{
public:
    AgentCalls();
    ~AgentCalls();

    AgentCalls(const AgentCalls &) = delete;
    AgentCalls &operator=(const AgentCalls &) = delete;

    QtInspector &inspector() { return m_inspector; }

    /// Does what the request asks for, at once, but for what it adds to @p input, which may be
    /// null for a request that calls no function.
    Message answer(const Message &request, InputSequence *input = nullptr);

    static Message failure(const Message &request, const QString &reason);

    /// The answer to a search; @p error has the reason of a null object.
    Message found(const Message &request, const SharedPtr<Object> &object, const QString &error);

    void release(const QVariantList &handles);

private:
    QVariantList perform(const Message &request, InputSequence *input, QString *error);
    QVariantList classValues(const QVariant &number) const;
    QVariantList setProperty(const QVariantList &values, QString *error);
    QVariantList getProperty(const QVariantList &values);
    QVariantList invoke(const QVariantList &values, QString *error);
    QVariantList cast(const QVariantList &values);
    QVariantList callFunction(const QVariantList &values, InputSequence *input, QString *error);
    void setObjectMap(const QVariantList &values);

    QVariant refOf(const SharedPtr<Object> &object, bool isCast = false);
    SharedPtr<Object> objectOf(const QVariant &ref);
    quint32 numberOf(const Class *objectClass);
    const Class *classOf(const QVariant &number) const;

    QtInspector m_inspector;
    QHash<const Class *, quint32> m_classNumbers;
    std::vector<const Class *> m_classes;
    QHash<quint32, SharedPtr<Object>> m_held;
    quint32 m_lastHandle = 0;
    // Whether the last request would have needed one handle too many.
    bool m_isFull = false;
    std::unique_ptr<ObjectMap> m_objectMap;
};

} // namespace Morvex
