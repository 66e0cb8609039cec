#pragma once

#include "objectmodel/objectname.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <vector>

namespace Morvex {

/// Whether the value names another object: by its text alone too, also a pattern that begins with
/// ":".
bool isReference(const ObjectName::PropertyValue &value);

/// The symbolic names that @p name refers to, also those of names within the name. The text of a
/// name bounds how deep they are nested.
QStringList symbolicReferences(const ObjectName &name);

/// Calls visit(name) for each name that @p start refers to, directly or not, and last for start
/// itself, each after those that it refers to. Chains of names may be longer than the stack is
/// deep. Names that are under way are not visited again, nor those for which isWanted is false.
template <typename ReferencesOf, typename IsWanted, typename Visit>
void visitInOrderOfReference(const QString &start, QSet<QString> *underWay,
                             ReferencesOf referencesOf, IsWanted isWanted, Visit visit)
{
    struct Step
    {
        QString name;
        QStringList references;
    };

    std::vector<Step> path{{start, referencesOf(start)}};
    underWay->insert(start);
    while (!path.empty()) {
        Step &step = path.back();
        if (step.references.isEmpty()) {
            visit(step.name);
            underWay->remove(step.name);
            path.pop_back();
            continue;
        }
        const QString reference = step.references.takeFirst();
        if (underWay->contains(reference) || !isWanted(reference))
            continue;
        underWay->insert(reference);
        path.push_back({reference, referencesOf(reference)});
    }
}

} // namespace Morvex
