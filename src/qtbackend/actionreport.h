#pragma once

#include <QVariant>

#include <functional>

class QObject;

namespace Morvex {

class QtModel;

/// Says what the user does, in maps that docs/application-protocol.md describes. Objects are named
/// at once, as they may no longer be there later.
class ActionReport
{
public:
    using Sink = std::function<void(const QVariantMap &)>;

    ActionReport(QtModel &model, const Sink &sink);

    /// @p isTextKept is whether what the object shows may be a part of its name.
    QString nameOf(const QObject *object, bool isTextKept = true) const;

    /// Returns the number of the action, which is never 0.
    int add(const QString &what, const QString &objectName, const QVariantMap &more = {});
    int add(const QString &what, const QObject *object, const QVariantMap &more = {})
    {
        return add(what, nameOf(object), more);
    }

    /// It was something else; @p number may be 0, for none.
    void replace(int number, const QString &what, const QString &objectName,
                 const QVariantMap &more = {});
    /// It has not happened; @p number may be 0, for none.
    void cancel(int number);

private:
    void send(int number, const QString &what, const QString &objectName, const QVariantMap &more);

    QtModel &m_model;
    Sink m_sink;
    int m_lastNumber = 0;
};

} // namespace Morvex
