#pragma once

#include "objectmodel/objectname.h"

#include <QStringList>

#include <vector>

class QObject;

namespace Morvex {

class QtModel;

/// Finds live objects by their names, as docs/object-names.md tells.
class NameResolver
{
public:
    explicit NameResolver(QtModel &model);

    /// The one object of that name. Null when there is none or more than one; @p error then says
    /// what there is instead.
    QObject *find(const QString &name, QString *error);

private:
    struct Condition;
    using Conditions = std::vector<Condition>;

    QObject *findSymbolic(const QString &name, QString *error);
    QObject *find(const ObjectName &name, QString *error);
    bool makeConditions(const ObjectName &name, Conditions *conditions, QString *error);
    bool holds(const Condition &condition, QObject *object);
    QString actualText(const QString &property, QObject *object, bool *exists);
    QString describeMissing(const ObjectName &name, const Conditions &conditions);
    QString describeDifference(const Conditions &conditions, QObject *object);

    QtModel &m_model;
    // Symbolic names that are being looked up: they may refer to each other.
    QStringList m_pending;
};

/// A name that tells the object to a reader; it may fit others as well.
QString realNameOf(const QObject *object);

} // namespace Morvex
