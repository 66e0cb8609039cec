#pragma once

#include "qtbackend/latechanges.h"

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
    int add(const QString &what, const QObject *object, const QVariantMap &more = {});

    /// That of the last action; 0 before the first.
    int lastNumber() const { return m_lastNumber; }

    /// It was something else; @p number may be 0, for none.
    void replace(int number, const QString &what, const QString &objectName,
                 const QVariantMap &more = {});
    void replace(int number, const QString &what, const QObject *object,
                 const QVariantMap &more = {});
    /// It has not happened; @p number may be 0, for none.
    void cancel(int number);

    /// What actions on an object have to wait for.
    LateChanges &changes() { return m_changes; }

private:
    void send(int number, const QString &what, const QString &objectName, const QVariantMap &more);

    QVariantMap withWaits(const QObject *object, const QVariantMap &more);

    QtModel &m_model;
    Sink m_sink;
    int m_lastNumber = 0;
    LateChanges m_changes;
};

} // namespace Morvex
