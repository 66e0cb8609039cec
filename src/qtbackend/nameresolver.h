#pragma once

#include "objectmodel/objectname.h"
#include "qtbackend/namecondition.h"
#include "qtbackend/objectindex.h"

#include <QHash>
#include <QPointer>
#include <QStringList>

#include <optional>
#include <vector>

class QObject;

namespace Morvex {

class QtModel;

/// Finds live objects by their names, as docs/object-names.md describes. Used within one turn of
/// the event loop: it keeps what it has found.
class NameResolver
{
public:
    explicit NameResolver(QtModel &model);

    /// The one object of that name. Null when there is none or more than one; @p error, which may
    /// be null, then says what there is instead. To find that out takes long.
    QObject *find(const QString &name, QString *error);

    /// All objects that fit the name, which may be symbolic. Empty with an error text when the name
    /// can't be used.
    std::vector<QObject *> findAll(const QString &name, QString *error);

    /// A name that fits the object alone at this moment. For many objects in a row.
    QString uniqueName(const QObject *object);

    /// The same for scripts that are run again: what distinguishes the object from others is rather
    /// where it is than its number. @p isTextKept is whether what it shows may be a part of the
    /// name.
    QString steadyName(const QObject *object, bool isTextKept = true);

    /// The names in the object map of the objects that are there.
    QHash<const QObject *, QString> symbolicNames();

private:
    ObjectName steadyRealName(const QObject *object);
    QString containerOf(const QObject *object);
    bool isUnique(const ObjectName &name, const QObject *object);
    QString numbered(const ObjectName &name, const QObject *object);
    QObject *findSymbolic(const QString &name, QString *error);
    QObject *findReal(const QString &name, QString *error);
    QObject *find(const ObjectName &name, QString *error);
    [[nodiscard]] bool makeConditions(const ObjectName &name, NameConditions *conditions,
                                      QString *error);
    [[nodiscard]] bool makeReference(const ObjectName &name, NameCondition *condition,
                                     QString *error);
    std::vector<QObject *> usableObjects(NameConditions conditions);
    std::vector<QObject *> fittingObjects(const NameConditions &conditions);
    QString describeFailure(const ObjectName &name, const NameConditions &conditions,
                            const std::vector<QObject *> &found);

    QtModel &m_model;
    // When there are many names to find.
    std::optional<ObjectIndex> m_index;
    // Symbolic names that are being looked up: they may refer to each other.
    QStringList m_pending;
    // By their symbolic names: several names may refer to one.
    QHash<QString, QPointer<QObject>> m_found;
    int m_depth = 0;
    // Whether the last name that was not found fits more than one object.
    bool m_isAmbiguous = false;
};

} // namespace Morvex
