#pragma once

#include "qtbackend/latechanges.h"

#include <QPointer>
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
    /// Under a name that the object has had.
    int add(const QString &what, const QString &objectName, const QObject *object,
            const QVariantMap &more);

    /// Keys that bring the cursor of a text to a place from any other, so that the same for the
    /// same object right before is replaced.
    void addCursor(const QString &objectName, const QObject *object, const QString &keys);

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

    void keepExtras(const QString &objectName, QVariantMap *more);

    QVariantMap withWaits(const QObject *object, const QVariantMap &more);
    void noteTyping(const QString &objectName, const QObject *object, QVariantMap *more);

    QtModel &m_model;
    Sink m_sink;
    int m_lastNumber = 0;
    int m_lastCursor = 0;
    // What the last action had that is said once, and its object.
    QVariantMap m_extras;
    QString m_extrasName;
    bool m_isLastCancelled = false;
    // What was typed into last.
    QString m_typedName;
    QPointer<const QObject> m_typedObject;
    LateChanges m_changes;
};

} // namespace Morvex
