#include "runner/visiblenames.h"

#include "objectmodel/objectname.h"

#include <QHash>

namespace Morvex {
namespace {

// The name as it was when there was one such object alone; empty when it can't have been another.
QString nameBefore(const QString &name)
{
    auto properties = ObjectName(name).properties();
    return properties.remove(QStringLiteral("visible")) > 0 && !properties.isEmpty()
               ? ObjectName(properties).qualifiedName()
               : QString();
}

void rename(QVariantMap *map, const QHash<QString, QString> &names)
{
    for (const QString &key : {QStringLiteral("object"), QStringLiteral("editor")}) {
        const QString name = map->value(key).toString();
        if (names.contains(name))
            map->insert(key, names.value(name));
    }
}

} // namespace

// Whoever uses an object sees it, so the longer name is right from the beginning.
QVariantList withVisibleNames(QVariantList actions,
                              const std::function<bool(const QString &)> &isKept)
{
    const QString object = QStringLiteral("object");
    const QString to = QStringLiteral("to");
    QHash<QString, QString> names;
    for (const QVariant &action : qAsConst(actions)) {
        const QString name = action.toMap().value(object).toString();
        const QString before = nameBefore(name);
        if (!before.isEmpty() && !isKept(before))
            names.insert(before, name);
    }
    for (QVariant &entry : actions) {
        QVariantMap action = entry.toMap();
        rename(&action, names);
        QVariantMap target = action.value(to).toMap();
        if (!target.isEmpty()) {
            rename(&target, names);
            action.insert(to, target);
        }
        entry = action;
    }
    return actions;
}

} // namespace Morvex
