#include "test/names/referenceorder.h"

#include "test/scriptedobjectmap.h"

namespace Morvex {

bool isReference(const ObjectName::PropertyValue &value)
{
    return value.kind == ObjectName::PropertyValue::REFERENCE ||
           ScriptedObjectMap::isSymbolicName(value.text);
}

QStringList symbolicReferences(const ObjectName &name)
{
    QStringList references;
    for (const ObjectName::PropertyValue &value : name.properties()) {
        if (!isReference(value))
            continue;
        if (ScriptedObjectMap::isSymbolicName(value.text))
            references += value.text;
        else
            references += symbolicReferences(ObjectName(value.text));
    }
    return references;
}

} // namespace Morvex
