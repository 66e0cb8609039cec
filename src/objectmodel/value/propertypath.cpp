#include "objectmodel/value/propertypath.h"

#include "objectmodel/class.h"
#include "objectmodel/property.h"

namespace Morvex {

QStringList propertySteps(const QString &path)
{
    return path.split(QLatin1Char('.'), Qt::SkipEmptyParts);
}

SharedPtr<Object> followProperties(const SharedPtr<Object> &start, const QStringList &steps,
                                   MissingProperty *missing)
{
    SharedPtr<Object> object = start;
    for (const QString &step : steps) {
        const Class *objectClass = object ? object->objectClass() : nullptr;
        const Property *property = objectClass ? objectClass->property(step) : nullptr;
        object = property ? property->get(object) : SharedPtr<Object>();
        if (object)
            continue;
        if (missing)
            *missing = {step, property != nullptr};
        break;
    }
    return object;
}

} // namespace Morvex
