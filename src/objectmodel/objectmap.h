#pragma once

#include "morvex_export.h"
#include "objectmodel/objectname.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QString>

namespace Morvex {

/// The table of symbolic names, each of which begins with ":".
class MORVEX_EXPORT ObjectMap
{
public:
    using Entries = QList<QPair<QString, ObjectName>>;

    ObjectMap() = default;
    ~ObjectMap();

    ObjectMap(const ObjectMap &) = delete;
    ObjectMap &operator=(const ObjectMap &) = delete;

    /// The map in use; null when there is none.
    static ObjectMap *self();
    /// Not owned; null takes the one in use out again.
    static void install(ObjectMap *map);

    /// One name a line: the symbolic name, a tab, the real name. In the order of the text; other
    /// lines are left out.
    static Entries parseSerializedMap(const QString &text);

    /// A word for an object of this name, made of the most telling of its properties. Without the
    /// leading ":" and not unique.
    static QString symbolFromMultiPropName(const ObjectName &name);

    /// Adds the names of a file. Returns an error text, empty on success.
    [[nodiscard]] QString load(const QString &fileName);

    void insert(const QString &symbolicName, const ObjectName &name);
    QMap<QString, ObjectName> names() const { return m_names; }
    bool contains(const QString &symbolicName) const { return m_names.contains(symbolicName); }
    /// Empty for an unknown name.
    ObjectName realName(const QString &symbolicName) const { return m_names.value(symbolicName); }

    /// The symbolic name of an object. Without one the real name comes back, unless @p create asks
    /// for a new, unique one.
    QString symbolicName(const QString &realName, bool create);

private:
    QMap<QString, ObjectName> m_names;
};

} // namespace Morvex
