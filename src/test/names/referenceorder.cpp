#include "test/names/referenceorder.h"

namespace Morvex {

bool isReference(const ObjectName::PropertyValue &value)
{
    return value.kind == ObjectName::PropertyValue::REFERENCE ||
           ObjectName::isSymbolicName(value.text);
}

QStringList symbolicReferences(const ObjectName &name)
{
    QStringList references;
    for (const ObjectName::PropertyValue &value : name.properties()) {
        if (!isReference(value))
            continue;
        if (ObjectName::isSymbolicName(value.text))
            references += value.text;
        else
            references += symbolicReferences(ObjectName(value.text));
    }
    return references;
}

} // namespace Morvex
